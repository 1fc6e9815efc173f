#include "objects/containers/smnamespace2_002_000.h"
#include "objects/containers/smsectiontypebuilder_002_000.h"
#include "objects/query/smcalculation2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/items.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMCalculation2* Make(SMProject2& project) {
    return new SMCalculation2(smtest::RootOf(project), &project);
}

QvSmartPtr<SMXMLObject2> Expression(const std::string& text) {
    return new SMXMLObject2("expression", smtest::Escaped(text), true);
}

void FillFilters(SMCalculation2& calculation, smtest::Values& values) {
    for (int count = values.Count(1); count > 0; --count) {
        calculation.GetPreviewFilters().push_back({values.Text("[ns].[previewed]").c_str(), values.Text("preview filter").c_str(),
                                                   values.Flag() ? Expression(values.Text("previewed")) : nullptr});
        calculation.GetSecurityFilters().push_back(
            {SMEnum_securityObjectType::Enum(values.Choice(2, 3)), values.Text("display path").c_str(), values.Text("search path").c_str(),
             values.Text("search path of the base").c_str(), values.Text("[ns].[secured]").c_str(), values.Text("security filter").c_str(),
             values.Flag() ? Expression(values.Text("secured")) : nullptr});
    }
}

void Fill(SMCalculation2& calculation, smtest::Values& values) {
    smtest::FillItem(calculation, values);
    calculation.SetStatus(SMEnum_status::Enum(values.Choice(0, 3)));
    calculation.SetCalcType(SMEnum_calcType::Enum(values.Choice(1, 3)));
    calculation.SetProperty("physicalName", "hidden", values.Text("COLUMN").c_str());
    calculation.SetProperty("qvdbref", "hidden", values.Text("physical object").c_str());
    FillFilters(calculation, values);
    for (int count = values.Count(2); count > 0; --count) {
        calculation.AddDataSourceRef(values.Text("[].[dataSources].[source]").c_str());
        calculation.AddDimensionRef(values.Text("[ns].[dimension]").c_str());
        calculation.AddHierarchyRef(values.Text("[ns].[hierarchy]").c_str());
    }
    smtest::FillBase(calculation, values);
}

SMCalculation2* Read(SMProject2& project, const std::string& element) {
    SMSectionTypeBuilder builder(smtest::RootOf(project));
    smtest::ParseInside(builder, element);
    return smtest::RootOf(project)->GetCalculations().back();
}

// the ids of its roles and its prompt are written, but not read, and two of its lists come back empty
const smtest::Register<SMCalculation2> ENTRY{"SMCalculation2", Make, Fill, Read, false};

}  // namespace
