#!/bin/bash
# fuzz.sh run SECONDS [TARGET...]   each target for its share of the seconds; what is found goes to fuzz/findings, a line of figures for each
#                                   run to build/fuzz/figures. Ends with status 1 when something was found.
# fuzz.sh minimize [COUNT]          the COUNT inputs of each target that reach the most, small ones first, go to fuzz/corpus.
# fuzz.sh coverage                  lines and regions that all inputs reach, by folder.
set -u
cd "$(dirname "$0")/.." || exit 2
bin=build/fuzz/fuzz
usage() {
    sed -n '2,5s/^# //p' "$0" >&2
    exit 2
}
all() { (cd fuzz/targets && ls -- *.cpp | sed 's/\.cpp$//'); }

make_seeds() {
    "$bin/smodel-fuzz-seeds" "$bin" examples/models/*.xml examples/models/multifile/{main,single}.xml tests/data/everykind.xml -- \
        tests/data/attacks/*.xml >/dev/null
}

# What a target with few and short inputs is to be fed.
longest() {
    case $1 in
    document | accounting | storing | files) echo 16384 ;;
    keptxml | remaininginfo | rows) echo 4096 ;;
    *) echo 1024 ;;
    esac
}

# run_one TARGET SECONDS: leaves the log beside the target.
run_one() {
    nice -n 15 "$bin/smodel-fuzz-$1" -max_total_time="$2" -rss_limit_mb=2048 -timeout=20 -max_len="$(longest "$1")" -dict="$bin/words.dict" \
        -artifact_prefix="fuzz/findings/$1-" -print_final_stats=1 -reload=0 "$bin/corpus/$1" "fuzz/corpus/$1" "$bin/seeds/$1" \
        >"$bin/$1.log" 2>&1
}

figures() {
    awk -v target="$1" -v used="$2" '
        { for (i = 1; i < NF; ++i) { if ($i == "cov:") cov = $(i + 1); if ($i == "ft:") ft = $(i + 1) } }
        /number_of_executed_units/ { runs = $2 }
        /peak_rss_mb/ { peak = $2 }
        /Test unit written to/ { finding = $NF }
        END {
            split(used, time, " ")
            printf "%-14s %6.0f s  %9d runs  cov %6d  ft %7d  peak %5d MB  %s\n", target, time[1] + time[2], runs, cov, ft, peak, finding
        }' "$bin/$1.log"
}

run() {
    local seconds=$1 share found=0 used
    shift
    [ $# -gt 0 ] || set -- $(all)
    share=$((seconds / $#))
    [ "$share" -gt 0 ] || share=1
    mkdir -p fuzz/findings
    make_seeds || exit 2
    for target in "$@"; do
        mkdir -p "$bin/corpus/$target"
        TIMEFORMAT='%U %S'
        used=$({ time run_one "$target" "$share"; } 2>&1)
        figures "$target" "$used" | tee -a build/fuzz/figures
        ! grep -q 'Test unit written to' "$bin/$target.log" || found=1
    done
    return $found
}

minimize() {
    local count=$1 merged
    merged=$(mktemp -d)
    make_seeds || exit 2
    for target in $(all); do
        mkdir "$merged/$target"
        "$bin/smodel-fuzz-$target" -merge=1 -max_len=2048 "$merged/$target" "$bin/corpus/$target" "$bin/seeds/$target" >"$bin/$target.log" 2>&1
        # of all that add something, evenly from the smallest to the largest
        find "$merged/$target" -type f -printf '%s %p\n' | sort -n | awk -v count="$count" '
            { path[NR] = $2 }
            END { step = NR > count ? NR / count : 1; for (at = 1; at <= NR; at += step) print path[int(at)] }' |
            while read -r input; do cp "$input" "fuzz/corpus/$target/$(basename "$input" | cut -c1-12)"; done
    done
    rm -r "$merged"
}

coverage() {
    local learned=$bin/corpus profiles
    bin=build/fuzz-coverage/fuzz
    LLVM_PROFILE_FILE=/dev/null make_seeds || exit 2
    profiles=$(mktemp -d)
    for target in $(all); do
        mkdir -p "$learned/$target"
        LLVM_PROFILE_FILE="$profiles/$target.%m" "$bin/smodel-fuzz-$target" -runs=0 -max_len="$(longest "$target")" "fuzz/corpus/$target" \
            "$learned/$target" "$bin/seeds/$target" >/dev/null 2>&1 || echo "$target: an input ends it, so that it counts for nothing" >&2
    done
    llvm-profdata merge -o "$profiles/all" "$profiles"/*.* 2>/dev/null
    llvm-cov report -instr-profile="$profiles/all" build/fuzz-coverage/libsmodel.so -object build/fuzz-coverage/libsmodel-repository.so \
        2>/dev/null | awk '
        # file, regions, missed, share, functions, missed, share, lines, missed, share, ...
        $1 ~ /\.(cpp|h|inc)$/ {
            sub(".*/\\.\\./", "", $1)
            depth = split($1, folder, "/")
            name = folder[1] "/" folder[2] (folder[2] == "qvutils" && depth > 3 ? "/" folder[3] : "")
            regions[name] += $2; met[name] += $2 - $3
            lines[name] += $8; read[name] += $8 - $9
        }
        END {
            for (name in lines)
                printf "%-22s %6d of %6d lines  %3d %%  %6d of %6d regions  %3d %%\n", name, read[name], lines[name],
                    100 * read[name] / lines[name], met[name], regions[name], 100 * met[name] / regions[name]
        }' | sort
    mv "$profiles/all" build/fuzz-coverage/profile
    rm -r "$profiles"
}

case ${1:-} in
run) [ $# -ge 2 ] || usage; shift; run "$@" ;;
minimize) minimize "${2:-30}" ;;
coverage) coverage ;;
*) usage ;;
esac
