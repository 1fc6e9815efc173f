#include <exception>
#include <iostream>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/qvutils/xml/qvsax2printhandler.h"

int main(int argc, char** argv) try {
    I18NString printed;
    QvStringWriter target(printed);
    QvSAX2PrintHandler printer("UTF-8", false, target, false);
    printer.SetIndent(true);

    QvSAX2Parser parser;
    parser.setContentHandler(&printer);
    parser.parse(I18NString(argc > 1 ? argv[1] : "examples/models/minimal.xml"));
    std::cout << printed.utf8() << '\n';
} catch (const TklRuntimeError& error) {
    std::cerr << error.what() << '\n';
    return 2;
}
