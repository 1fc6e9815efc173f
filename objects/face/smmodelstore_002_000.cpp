#include "objects/face/smmodelstore_002_000.h"

#include <new>

#include "objects/face/smguard_002_000.h"
#include "objects/face/smmodeldocument_002_000.h"

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
    if (result.IsDone()) result.project = project;
    return result;
}

}  // namespace schema_002_000
