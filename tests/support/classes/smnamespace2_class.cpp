#include "objects/containers/smnamespace2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"
#include "tests/support/sections.h"

using namespace schema_002_000;

namespace {

SMNamespace2* Make(SMProject2& project) {
    return new SMNamespace2(smtest::RootOf(project), &project);
}

void Fill(SMNamespace2& ns, smtest::Values& values) {
    smtest::FillSection(ns, values);
}

SMNamespace2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetNamespaces().back();
}

const smtest::Register<SMNamespace2> ENTRY{"SMNamespace2", Make, Fill, Read};

}  // namespace
