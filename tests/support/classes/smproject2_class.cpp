#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
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
    smtest::FillBase(project, values);
}

SMProject2* Read(SMProject2& project, const std::string& element) {
    SMProjectBuilder builder(&project);
    smtest::ParseInside(builder, element);
    return &project;
}

const smtest::Register<SMProject2> ENTRY{"SMProject2", Make, Fill, Read};

}  // namespace
