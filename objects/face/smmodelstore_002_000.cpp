#include "objects/face/smmodelstore_002_000.h"

#include <algorithm>
#include <map>
#include <new>
#include <string>

#include "objects/face/smguard_002_000.h"
#include "objects/face/smmodeldocument_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/query/smdefinition2_002_000.h"

namespace schema_002_000 {

namespace {

constexpr std::size_t OBJECTS_PER_TICK = 1'024;

/** Watches the objects that pass through a context, as long as it lives. */
class Watch {
  public:
    Watch(IOHelper& context, const SMControl& control) : m_context(context), m_ticker(control, SMProgress::objects, OBJECTS_PER_TICK) {
        m_context.SetVisitor([this](const IOObject&) { m_ticker.Add(1); });
    }
    ~Watch() { m_context.SetVisitor(nullptr); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    std::size_t Count() const { return m_ticker.Done(); }

  private:
    IOHelper& m_context;
    SMTicker m_ticker;
};

/** What a definition logs of its row when that has no query. */
std::string LoggedOfForm(const std::string& form) {
    return "Constructing a definition with query type '" + form + "', which we don't know what to do with.";
}

/** The forms that have no columns are kept in records, which are read behind the row: of a definition that got its own nothing is lost. */
void DropWhatIsToldOfKeptForms(const SMProject2& project, std::vector<SMDiagnostic>& told) {
    const std::string beginning = LoggedOfForm("").substr(0, LoggedOfForm("").find('\'') + 1);
    const auto isOfForm = [&](const SMDiagnostic& event) { return event.message.starts_with(beginning); };
    if (std::none_of(told.begin(), told.end(), isOfForm)) return;
    std::map<std::string, std::size_t> kept;
    SMForEachObject(project, [&](const SMObjectBase& object, int) {
        if (object.GetSMType() != SMEnum_xmltag::Enum::definition) return;
        const auto& definition = static_cast<const SMDefinition2&>(object);
        if (!definition.GetQuery() && (definition.mdQuery || definition.storedProcedure || definition.queryOperation))
            ++kept[LoggedOfForm(std::string(definition.GetQueryTypeName().utf8()))];
    });
    std::erase_if(told, [&](const SMDiagnostic& event) {
        const auto found = kept.find(event.message);
        if (found == kept.end() || found->second == 0) return false;
        --found->second;
        return true;
    });
}

}  // namespace

SMPutResult SMPutModel(SMProject2& project, IOHelper& context, const SMControl& control, const std::function<void()>& settle) {
    SMPutResult result;
    if (QvXMLFormatTarget* const document = context.DocumentTarget()) {
        SMSaveOptions options;
        options.control = control;
        // what is told of the document is told again of the rows
        if (const SMSaveResult written = SMWriteModel(project, *document, options); !written.IsDone()) {
            static_cast<SMResult&>(result) = written;
            return result;
        }
    }
    const Watch watch(context, control);
    bool stands = false;
    try {
        SMRunGuarded(result, [&] {
            if (settle) settle();
            return stands = project.write(context);
        });
    } catch (const std::bad_alloc&) {
        if (!stands) throw;
        result.status = SMStatus::done;  // without what there was to tell: whoever heard of a failure would save again
    }
    result.objects = watch.Count();
    return result;
}

SMGetResult SMGetModel(IOHelper& context, const SMControl& control) {
    SMGetResult result;
    const Watch watch(context, control);
    QvSmartPtr<SMProject2> project;
    SMRunGuarded(result, [&] {
        project = new SMProject2;
        return project->read(context);
    });
    result.objects = watch.Count();
    if (!result.IsDone()) return result;
    DropWhatIsToldOfKeptForms(*project, result.diagnostics);
    result.project = project;
    return result;
}

}  // namespace schema_002_000
