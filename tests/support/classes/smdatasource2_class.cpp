#include "objects/project/smprojectdocument_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMDatasource2* Make(SMProject2& project) {
    return new SMDatasource2(&project, &project);
}

void Fill(SMDatasource2& source, smtest::Values& values) {
    smtest::FillNames(source, values);
    source.SetQueryProcessing(SMEnum_queryProcessing::Enum(values.Choice(1, 2)));
    source.SetRollupProcessing(SMEnum_rollupProcessing::Enum(values.Choice(3, 4)));
    source.SetCmDataSource(values.Text("connection").c_str());
    source.SetCatalog(values.Text("catalog").c_str());
    source.SetCube(values.Text("cube").c_str());
    source.SetSchema(values.Text("schema").c_str());
    source.SetConnectionString(values.Text("connection string").c_str());
    source.SetAliasTableMapRef(values.Text("[].[parameterMaps].[aliases]").c_str());
    if (values.Flag()) source.SetType(new SMXMLObject2("type", "<type><interface>OL</interface></type>", false));
    smtest::FillBase(source, values);
}

SMDatasource2* Read(SMProject2& project, const std::string& element) {
    SMProjectBuilder builder(&project);
    smtest::ParseInside(builder, element);
    return project.GetDataSources().back();
}

const smtest::Register<SMDatasource2> ENTRY{"SMDatasource2", Make, Fill, Read};

}  // namespace
