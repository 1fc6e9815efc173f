#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace bench {

/** A model document of all kinds of objects, as `scale.py` writes it: about 18 kB for each subject. */
inline std::string ScaleDocument(unsigned subjects) {
    const std::string command = "python3 " SMODEL_BENCH_SOURCE "/scale.py " + std::to_string(subjects) + " 20";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    if (!pipe) std::abort();
    std::string document, block(1 << 16, '\0');
    for (std::size_t got; (got = std::fread(block.data(), 1, block.size(), pipe.get())) > 0;) document.append(block, 0, got);
    if (!document.ends_with("</project>")) std::abort();
    return document;
}

}  // namespace bench
