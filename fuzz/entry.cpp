// What the fuzzer calls. SMODEL_FUZZ_TARGET is the name of one target.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "core/qvutils/diag/diagnostics.h"
#include "fuzz/targets.h"
#include "objects/face/smguard_002_000.h"

namespace {

const fuzz::Target& ChosenTarget() {
    for (const fuzz::Target& target : fuzz::TARGETS)
        if (target.name == std::string_view(SMODEL_FUZZ_TARGET)) return target;
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Target& target = ChosenTarget();
    schema_002_000::SMQuietSink quiet;
    const SMLogScope scope(quiet);
    try {
        target.run({reinterpret_cast<const char*>(data), size});
    } catch (const fuzz::Broken& broken) {
        std::fprintf(stderr, "%s: broken: %s\n", target.name, broken.what());
        std::abort();
    }
    return 0;
}
