#include "objects/project/smprojectdocument_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMPackage2* Make(SMProject2& project) {
    auto* package = new SMPackage2(&project, &project);
    package->SetAdminAccess(new SMXMLObject2("adminAccess", "", true));  // without it each write logs what it lacks
    return package;
}

void Fill(SMPackage2& package, smtest::Values& values) {
    smtest::FillTexts(package, values);
    package.SetRoleBased(values.Flag());
    if (values.Flag()) package.SetLastPublished(QvDate("2019-08-07T06:05:04"));
    package.SetMaxVersions(values.Number(5));
    for (int count = values.Count(2); count > 0; --count) package.AddLocale(values.Text("en").c_str());
    for (int count = values.Count(2); count > 0; --count)
        package.AddViewref(values.Name("[].[securityViews].[" + std::to_string(count) + "]").c_str());
    if (values.Flag()) package.SetAdminAccess(new SMXMLObject2("adminAccess", "<decisionRole></decisionRole>", true));
    smtest::FillBase(package, values);
}

SMPackage2* Read(SMProject2& project, const std::string& element) {
    SMProjectBuilder builder(&project);
    smtest::ParseInside(builder, element);
    return project.GetPackages()[project.GetPackages().size() - 1];
}

const smtest::Register<SMPackage2> ENTRY{"SMPackage2", Make, Fill, Read};

}  // namespace
