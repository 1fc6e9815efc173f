#include "objects/project/smprojectdocument_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace {

SMSecurityView2* Make(SMProject2& project) {
    return new SMSecurityView2(&project, &project);
}

void Fill(SMSecurityView2& view, smtest::Values& values) {
    smtest::FillNames(view, values);
    view.SetRoleBased(values.Flag());
    for (int count = values.Count(2); count > 0; --count) {
        SMSecurityDefinitionSet2 set;
        set.includeRule = SMEnum_includeRule::Enum(values.Choice(count, 3));
        for (int refs = values.Count(2); refs > 0; --refs)
            set.refs.push_back(values.Text("[ns].[object " + std::to_string(refs) + "]").c_str());
        if (!set.refs.empty() && count == 1) set.refTag = SMSecurityDefinitionSet2::viewref;
        view.AppendDefinitionSet(set);
    }
    for (int count = values.Count(2); count > 0; --count)
        view.AppendFunctionSet(values.Text("function set " + std::to_string(count)).c_str());
    for (int count = values.Count(2); count > 0; --count) {
        SMQosOverride2 entry;
        entry.functionId = values.Text("function").c_str();
        entry.qosLevel = values.Text("limited").c_str();
        entry.description["en"] = values.Text("why").c_str();
        entry.description["fr"] = values.Text("pourquoi").c_str();
        view.AppendQosOverride(entry);
    }
    if (values.Flag()) view.SetAccess(new SMXMLObject2("access", "<access><decisionRole></decisionRole></access>", false));
    smtest::FillBase(view, values);
}

SMSecurityView2* Read(SMProject2& project, const std::string& element) {
    SMProjectBuilder builder(&project);
    smtest::ParseInside(builder, element);
    return project.GetSecurityViews().back();
}

const smtest::Register<SMSecurityView2> ENTRY{"SMSecurityView2", Make, Fill, Read};

}  // namespace
