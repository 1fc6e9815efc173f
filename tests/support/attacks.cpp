#include "tests/support/attacks.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <sys/stat.h>

const std::vector<Attack>& Attacks() {
    static const std::vector<Attack> attacks = {
        // other files and addresses
        {"external-entity.xml", 2, "SM2009"},
        {"external-entity-relative.xml", 2, "SM2009"},
        {"external-entity-http.xml", 2, "SM2009"},
        {"external-entity-public.xml", 2, "SM2009"},
        {"external-entity-in-attribute.xml", 2, "SM2009"},
        {"external-entity-in-entity.xml", 2, "SM2009"},
        {"external-entity-unparsed.xml", 2, "SM2009"},
        {"external-dtd.xml", 0, ""},
        {"external-dtd-http.xml", 0, ""},
        {"external-dtd-entity.xml", 2, "SM2010"},
        {"parameter-entity.xml", 2, "SM2011"},
        {"parameter-entity-internal.xml", 2, "SM2011"},
        {"attribute-list-behind-entities.xml", 2, "SM2011"},
        {"xinclude.xml", 1, "SM1001"},
        {"schema-location.xml", 1, "SM1002"},
        {"stylesheet.xml", 0, ""},
        // expansion
        {"billion-laughs.xml", 2, "SM2109"},
        {"billion-laughs-in-attribute.xml", 2, "SM2110"},
        {"quadratic-blow-up.xml", 2, "SM2110"},
        {"recursive-entity.xml", 2, "SM2012"},
        // bytes
        {"nul.xml", 2, "SM2006"},
        {"all-nul.xml", 2, "SM2006"},
        {"overlong-utf8.xml", 2, "SM2005"},
        {"surrogate-utf8.xml", 2, "SM2005"},
        {"latin1-as-utf8.xml", 2, "SM2005"},
        {"utf16-entity.xml", 2, "SM2009"},
        {"utf16-without-mark.xml", 2, "SM2009"},
        {"utf16-odd-length.xml", 2, "SM2004"},
        {"utf16-lone-surrogate.xml", 2, "SM2005"},
        {"utf32-entity.xml", 2, "SM2009"},
        {"utf7-entity.xml", 2, "SM2009"},
        {"ebcdic-entity.xml", 2, "SM2009"},
        {"unknown-encoding.xml", 2, "SM2007"},
        {"encoding-of-a-path.xml", 2, "SM2007"},
        {"undecodable-declaration.xml", 2, "SM2005"},
        {"undecodable-utf32.xml", 2, "SM2005"},
        {"gzip.xml", 2, "SM2001"},
        // structure
        {"version-1.1.xml", 2, "SM2008"},
        {"version-9.xml", 2, "SM2008"},
        {"other-root.xml", 2, "SM2003"},
        {"two-roots.xml", 2, "SM2001"},
        {"no-markup.xml", 2, "SM2001"},
        {"blank.xml", 2, "SM2004"},
        {"empty.xml", 2, "SM2002"},
        {"unclosed.xml", 2, "SM2004"},
        {"control-character.xml", 2, "SM2001"},
        {"same-attribute-twice.xml", 2, "SM2001"},
        // separate files
        {"path-up.xml", 1, "SM2025"},
        {"path-up-in-filepath.xml", 1, "SM2025"},
        {"path-up-and-down.xml", 1, "SM2025"},
        {"path-entity-up.xml", 1, "SM2025"},
        {"path-absolute.xml", 1, "SM2025"},
        {"path-absolute-filepath.xml", 1, "SM2025"},
        {"path-absolute-link.xml", 1, "SM2025"},
        {"path-proc.xml", 1, "SM2025"},
        {"path-link.xml", 1, "SM2025"},
        {"path-linked-directory.xml", 1, "SM2025"},
        {"path-linked-filepath.xml", 1, "SM2025"},
        {"path-file-url.xml", 1, "SM2021"},
        {"path-http-url.xml", 1, "SM2021"},
        {"path-percent.xml", 1, "SM2021"},
        {"path-percent-slash.xml", 1, "SM2021"},
        {"path-backslash.xml", 1, "SM2021"},
        {"path-utf8-trick.xml", 1, "SM2021"},
        {"path-fullwidth.xml", 1, "SM2021"},
        {"path-empty.xml", 1, "SM2025"},
        {"path-directory.xml", 1, "SM2023"},
        {"path-fifo.xml", 1, "SM2024"},
        {"path-loop.xml", 1, "SM2024"},
        {"path-long.xml", 1, "SM2024"},
        {"path-itself.xml", 1, "SM2003"},
        {"path-wrong-root.xml", 1, "SM2003"},
    };
    return attacks;
}

void LayOutAttacks(const std::string& directory) {
    namespace fs = std::filesystem;
    const fs::path model = fs::path(directory) / "model";
    fs::copy(SMODEL_TEST_DATA "/attacks", model);
    std::ofstream(fs::path(directory) / "secret.xml") << "<namespace><name locale=\"en\">secret</name></namespace>";
    std::ofstream(fs::path(directory) / "secret.dtd") << "<!ENTITY e 'secret'>";
    fs::create_directory(model / "sub");
    fs::create_symlink("../secret.xml", model / "link.xml");
    fs::create_symlink("loop.xml", model / "loop.xml");
    fs::create_directory_symlink("..", model / "up");
    fs::create_directory_symlink("/etc", model / "etc");
    if (::mkfifo((model / "fifo.xml").c_str(), 0600) != 0) throw std::runtime_error("no pipe for the test");
}
