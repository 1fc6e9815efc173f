#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMProject2* Make(SMProject2& project) {
    return &project;
}

void Fill(SMProject2& project, smtest::Values& values) {
    project.SetName(values.Text("the project").c_str());
    project.AddLocale("en");  // a project without locales is one of the release before, and is read as such
    if (values.Flag()) project.AddLocale(values.Text("fr").c_str());
    SMNamespace2* root = smtest::RootOf(project);
    smtest::FillBase(*root->AddOrUpdateNamespace(values.Name("inner namespace").c_str(), ""), values);
    root->SetLastChangedDate(values.Date());
    SMParameterMap2* map = project.AddParameterMapOrReturnExisting(values.Name("inner map").c_str(), values.Flag());
    map->AddOrUpdateParameterMapEntry(values.Text("a key").c_str(), values.Text("a value").c_str());
    smtest::FillIdentity(*map->GetEntries().back(), values);
    smtest::FillIdentity(*map, values);
    smtest::FillIdentity(
        *project.AddDataSourceOrReturnExisting(values.Name("inner source").c_str(), "", "", SMEnum_queryProcessing::databaseOnly), values);
    SMSecurityView2* view = project.AddSecurityViewOrReturnExisting(values.Name("inner view").c_str());
    view->SetAccess(nullptr);  // what new objects are given has quotes in a form that a document does not keep
    smtest::FillIdentity(*view, values);
    SMPackage2* package = project.AddPackageOrReturnExisting(values.Name("inner package").c_str(), "", view);
    package->SetAdminAccess(new SMXMLObject2("adminAccess", "", true));
    smtest::FillIdentity(*package, values);
    smtest::FillBase(project, values);
}

SMProject2* Read(SMProject2& project, const std::string& element) {
    SMProjectBuilder builder(&project);
    smtest::ParseInside(builder, element);
    return &project;
}

const smtest::Register<SMProject2> ENTRY{"SMProject2", Make, Fill, Read};

}  // namespace
