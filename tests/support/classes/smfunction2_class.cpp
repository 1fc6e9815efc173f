#include "objects/containers/smnamespace2_002_000.h"
#include "objects/publication/smfunction2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMFunction2* Make(SMProject2& project) {
    return new SMFunction2(smtest::RootOf(project), &project);
}

SMDataColumnProperties2 Properties(smtest::Values& values) {
    SMDataColumnProperties2 properties;
    properties.dataType = SMEnum_datatype::Enum(values.Choice(5, 10));
    if (properties.dataType >= SMEnum_datatype::int16) {
        properties.precision = values.Number(18);
        properties.scale = values.Number(2);
    }
    properties.size = values.Number(8);
    properties.nullable = values.Flag();
    properties.aggregationRule = SMEnum_aggregationRule::Enum(values.Choice(1, 3));
    return properties;
}

void Fill(SMFunction2& function, smtest::Values& values) {
    smtest::FillTexts(function, values);
    function.AddSyntaxTip("en", values.Text("f(x)").c_str());
    function.AddSyntaxTip("fr", values.Text("f de x").c_str());
    function.SetCanonicalName(values.Text("db.f").c_str());
    function.SetDataSourceRef(values.Text("[].[dataSources].[d]").c_str());
    if (values.Flag()) {
        SMDataColumnProperties2 result = Properties(values);
        result.isPresent = true;
        function.SetResult(result);
    }
    for (int count = values.Count(2); count > 0; --count) {
        SMProcParameter2 parameter;
        parameter.parameterName = values.Text("parameter " + std::to_string(count)).c_str();
        parameter.mode = values.Text("in").c_str();
        parameter.properties = Properties(values);
        function.AppendProcParameter(parameter);
    }
    function.displayOrder = values.Number(4);
    smtest::FillBase(function, values);
}

SMFunction2* Read(SMProject2& project, const std::string& element) {
    SMNamespace2* root = smtest::RootOf(project);
    SMNamespaceBuilder builder(root, false);
    smtest::ParseInside(builder, element);
    return root->GetFunctions().back();
}

const smtest::Register<SMFunction2> ENTRY{"SMFunction2", Make, Fill, Read};

}  // namespace
