#!/bin/bash
# check_exports_test.sh COMPILER: builds small libraries and expects scripts/check-exports.sh to tell the strangers in them.
set -eu
check=$PWD/scripts/check-exports.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"

mkdir core
cat >core/host.h <<'CPP'
#define SM_API __attribute__((visibility("default")))
class SM_API Host { public: virtual ~Host(); };
SM_API int HostFunction(int);
extern SM_API const int HOST_CONSTANT;
namespace qv { class SM_API Marked { public: void Go(); }; }
CPP
cat >good.cpp <<'CPP'
#include "core/host.h"
Host::~Host() {}
int HostFunction(int number) { return number; }
const int HOST_CONSTANT = 3;
namespace qv { void Marked::Go() {} }
namespace schema_002_000 { class SM_API Model { public: virtual void Run(); }; void Model::Run() {} }
CPP
echo 'namespace qv { __attribute__((visibility("default"))) void Helper() {} }' >helper.cpp
echo 'extern "C" __attribute__((visibility("default"))) int sqlite3_open_all() { return 0; }' >foreign.cpp
for source in good helper foreign; do
    "$1" -shared -fPIC -fvisibility=hidden "$source.cpp" -o "$source.so"
done

"$check" good.so
if "$check" helper.so >told; then exit 1; fi
grep -qx 'helper.so: exports qv::Helper' told
if "$check" good.so foreign.so >told; then exit 1; fi
grep -qx 'foreign.so: exports sqlite3_open_all' told
[ "$(wc -l <told)" -eq 1 ]
