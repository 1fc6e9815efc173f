#include <string>
#include <utility>
#include <vector>

#include "core/qvutils/persist/iohelper.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/dimensional/smlevel2_002_000.h"
#include "objects/links/smscoperelationship2_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/publication/smfunction2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "objects/query/smcalculation2_002_000.h"
#include "objects/query/smdefinition2_002_000.h"
#include "objects/query/smfilter2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"

using namespace schema_002_000;

namespace {

using ObjectPtr = QvSmartPtr<SMObjectBase>;

/** Has records of remaining info for whoever asks, and nothing else. */
class RecordContext : public IOHelper {
  public:
    explicit RecordContext(std::string_view input) {
        while (!input.empty()) {
            const std::string_view tag = fuzz::TakePart(input), text = fuzz::TakePart(input);
            const QvSmartPtr<IOHashParam> row = new IOHashParam;
            row->insertOrReplace(IOParamTag::XML_ELEMENT_ID, new IOQvStringParam(I18NString(tag)));
            row->insertOrReplace(IOParamTag::XML_ELEMENT_VERSION, new IOLongParam(1));
            row->insertOrReplace(IOParamTag::XML_ELEMENT_PARENT_VERSION, new IOLongParam(0));
            row->insertOrReplace(IOParamTag::XML_ELEMENT_NAME, new IOQvStringParam(I18NString(tag)));
            row->insertOrReplace(IOParamTag::XML_ELEMENT_VALUE, new IOQvStringParam(I18NString(text)));
            m_rows.push_back(row);
        }
    }
    bool DoReadAction(const I18NString& action, const IOHashParam&, IOArrayParam& results) override {
        results.clear();
        if (action == I18NString(IOAction::AT_ReadRemainingInfo))
            for (const auto& row : m_rows) results.push_back(row.get());
        return true;
    }

  private:
    std::vector<QvSmartPtr<IOHashParam>> m_rows;
};

ObjectPtr MakeObject(SMProject2* project, char kind) {
    switch (kind) {
    case 'p': return project;
    case 'n': return new SMNamespace2(project, project);
    case 'q': return new SMQuerySubject2(project, project, nullptr);
    case 'i': return new SMQueryItem2(project, project);
    case 'd': return new SMDefinition2(project, project);
    case 'f': return new SMFilter2(project, project);
    case 'c': return new SMCalculation2(project, project);
    case 'm': return new SMParameterMap2(project, project);
    case 'k': return new SMPackage2(project, project);
    case 's': return new SMSecurityView2(project, project);
    case 'u': return new SMFunction2(project, project);
    case 't': return new SMDatasource2(project, project);
    case 'r': return new SMScopeRelationship2(project, project);
    case 'l': return new SMLevel2(project, project);
    default: return new SMDimension2(project, project, nullptr);
    }
}

/** Without a date, which for an object that tells none is the moment of its making. */
std::string WriteAsElement(SMObjectBase& object) {
    object.SetLastChangedDate(QvDate(false));
    I18NString text;
    QvStringWriter writer(text);
    QvSAX2PrintHandler handler("UTF-8", false, writer, true);
    object.WriteXMLElement(nullptr, &handler, writer);
    return std::string(text.utf8());
}

}  // namespace

// the letter of a kind, then tags and texts of records in turn, parted by NUL
void fuzz::RemainingInfo(std::string_view input) {
    if (input.empty()) return;
    const QvSmartPtr<SMProject2> project = new SMProject2;
    RecordContext context(input.substr(1));
    const ObjectPtr object = MakeObject(project, input.front());
    const bool read = object->read(context);
    const std::string element = WriteAsElement(*object);
    Require(WriteAsElement(*object) == element, "an object is written the same twice");

    const QvSmartPtr<SMProject2> other = new SMProject2;
    RecordContext same(input.substr(1));
    const ObjectPtr again = MakeObject(other, input.front());
    Require(again->read(same) == read && WriteAsElement(*again) == element, "the same records make the same object");
}
