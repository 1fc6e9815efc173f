#!/bin/sh
# Installs, through apt, the packages that a build and its tests need and that this machine lacks.
# Further words name what else is wanted: `setup.sh clang` (make check-long), `setup.sh format` (make format), `setup.sh fuzz` (make fuzz).
set -eu

wanted="g++ make cmake ninja-build ccache pkg-config libxerces-c-dev libicu-dev libsqlite3-dev libssl-dev libzstd-dev libxxhash-dev
        libpq-dev postgresql-15 libcli11-dev nlohmann-json3-dev libgtest-dev libgmock-dev libbenchmark-dev strace
        python3"
for extra in "$@"; do
    case $extra in
    clang) wanted="$wanted clang" ;;
    format) wanted="$wanted clang-format" ;;
    fuzz) wanted="$wanted clang libclang-rt-14-dev llvm" ;;
    *)
        echo "setup: unknown word '$extra'" >&2
        exit 2
        ;;
    esac
done

installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' 2>/dev/null | sed -n 's/^installed //p')

# A tool that is there in another way than by its package is as good.
present() {
    case $1 in
    ninja-build) command -v ninja >/dev/null ;;
    llvm) command -v llvm-cov >/dev/null ;;
    *-dev | postgresql-*) printf '%s\n' "$installed" | grep -qx "$1" ;;
    *) command -v "$1" >/dev/null ;;
    esac
}

missing=
for package in $wanted; do
    present "$package" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

if ! command -v apt-get >/dev/null; then
    echo "setup: this machine has no apt; please install what these Debian packages hold:$missing" >&2
    exit 1
fi
root=
[ "$(id -u)" -eq 0 ] || root=sudo

apt() { $root env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300 "$@"; }
# The tests start servers of their own; that of the package is not to run beside them.
no_main_cluster() {
    case $missing in *postgresql*) ;; *) return 0 ;; esac
    ! ls /usr/lib/postgresql/*/bin/postgres >/dev/null 2>&1 || return 0
    $root mkdir -p /etc/postgresql-common/createcluster.d
    echo 'create_main_cluster = false' | $root tee /etc/postgresql-common/createcluster.d/no-main-cluster.conf >/dev/null
}
# shellcheck disable=SC2086 # a list of words
install() { apt install -y --no-install-recommends $missing; }

echo "setup: installing${root:+ with sudo}:$missing"
no_main_cluster
known=yes
for package in $missing; do
    [ -n "$(apt-cache madison "$package" 2>/dev/null)" ] || known=no
done
if [ $known = no ]; then
    echo "setup: apt does not know all of them yet, so its lists are brought up to date first"
    apt update
    install
elif ! install; then
    echo "setup: that failed; once more with up-to-date lists"
    apt update
    install
fi
