#include "core/repository/smrepositoryhelper.h"

#include "core/qvutils/diag/qvlogevent.h"
#include "core/qvutils/params/ionames.h"
#include "core/repository/documents/documentreader.h"
#include "core/repository/helperstate.h"
#include "core/repository/naming.h"

namespace {

IOParameter* EmptyValue(qv::CellKind kind) {
    switch (kind) {
    case qv::CellKind::number: return new IOLongParam;
    case qv::CellKind::flag: return new IOBoolParam;
    case qv::CellKind::date: return new QvDateParam;
    case qv::CellKind::text: break;
    }
    return new IOQvStringParam;
}

QvSmartPtr<IOParameter> MakeMapping(const qv::CatalogueKind& kind) {
    using qv::KeyGroup;
    const QvULString* const tags[] = {&IOParamTag::SMATTRIBUTE, &IOParamTag::SMSIMPLEELEMENT, &IOParamTag::SMMIXEDELEMENT,
                                      &IOParamTag::SMLANGELEMENT, &IOParamTag::SMPROPERTYELEMENT};
    QvSmartPtr<IOHashParam> mapping = new IOHashParam;
    std::vector<IOHashParam*> groups;
    for (const QvULString* const tag : tags) {
        groups.push_back(new IOHashParam);
        mapping->insertOrReplace(*tag, groups.back());
    }
    groups.front()->insertOrReplace(QvULString::Immortal("id"), new IOQvStringParam);
    groups.front()->insertOrReplace(QvULString::Immortal("version"), new IOLongParam);
    bool typed = kind.computedType;
    for (const qv::CatalogueColumn& column : qv::FindTable(kind.table)->columns) {
        const auto group = static_cast<std::size_t>(column.group);
        if (group < groups.size()) groups[group]->insertOrReplace(QvULString::Immortal(column.key), EmptyValue(column.readAs));
        if (column.group == KeyGroup::order) mapping->insertOrReplace(IOParamTag::XML_ELEMENT_ORDER, new IOLongParam);
        typed |= column.group == KeyGroup::objectType;
    }
    if (typed) mapping->insertOrReplace(IOParamTag::OBJECT_TYPE, new IOQvStringParam);
    return mapping.get();
}

}  // namespace

SMRepositoryHelper::State::State(std::shared_ptr<qv::StoreBackend> store, IOHelper& helper, std::int64_t project, std::int64_t head)
    : backend(std::move(store)), session(*backend), reader(session), save(session, helper, project, head) {
    reader.Pin(project, head);
}

SMRepositoryHelper::SMRepositoryHelper(const std::shared_ptr<qv::StoreBackend>& backend, std::int64_t project, std::int64_t head)
    : m_state(std::make_unique<State>(backend, *this, project, head)) {}

SMRepositoryHelper::~SMRepositoryHelper() = default;

bool SMRepositoryHelper::DoReadAction(const I18NString& action, const IOHashParam& params, IOArrayParam& results) {
    const auto fail = [](const std::string& what) {
        QvLogEvent(1, "code", "QvOne", "smrepositoryhelper", "SMRepositoryHelper", "DoReadAction", 0, I18NString(std::string_view(what)),
                   "")
            .Log();
        return false;
    };
    results.clear();
    try {
        return m_state->Read(action, params, GetFixingLostRemainingInfo(), results);
    } catch (const qv::StoreError& error) {
        results.clear();
        return fail("Repository '" + m_state->session.Name() + "': " + error.message());
    } catch (const IOParamException& error) {
        results.clear();
        return fail(error.what());
    }
}

bool SMRepositoryHelper::State::Read(const I18NString& action, const IOHashParam& params, bool fixing, IOArrayParam& results) {
    if (action == IOAction::AT_ReadSMProject) {
        // a load begins here: the newest revision, and saves are based on it
        if (!save.Running() && !pinned && save.project() != 0) {
            const std::optional<qv::ProjectEntry> entry = session.Project(save.project());
            if (!entry) throw qv::StoreError("The project is not in the repository any more.");
            save.SetBase(entry->head);
        }
        reader.Pin(save.project(), save.base());
        reader.ReadProject(results);
        return true;
    }
    const QvSmartPtr<IOParameter> clauses = params.GetByName(IOParamTag::CLAUSES);
    const QvULString parent = clauses->GetByName(IOParamTag::XML_ELEMENT_PARENT_ID)->GetQvULStringValue();
    if (action == IOAction::AT_ReadSMObject) {
        const I18NString tag = params.GetByName(IOParamTag::OBJECT)->GetQvStringValue();
        if (const qv::CatalogueKind* const kind = qv::FindKind(tag.utf8())) reader.ReadKind(*kind, parent.utf8(), results);
        return true;
    }
    if (action == IOAction::AT_ReadRemainingInfo) {
        const long version = clauses->GetByName(IOParamTag::XML_ELEMENT_PARENT_VERSION)->GetLongValue();
        reader.ReadRecords(parent.utf8(), version, fixing, results);
        return true;
    }
    throw qv::StoreError("There is no action '" + std::string(action.utf8()) + "' of reading.");
}

bool SMRepositoryHelper::State::Saved(bool success, long revisionBefore) {
    if (!save.Running() && save.base() != revisionBefore) {
        pinned = false;
        reader.Pin(save.project(), save.base());
    }
    return success;
}

bool SMRepositoryHelper::MayHaveRows(const I18NString& objectName, const QvULString& parentId) {
    try {
        return m_state->reader.MayHaveRows(objectName.utf8(), parentId.utf8());
    } catch (const qv::StoreError&) {
        return true;  // nothing was kept of the table, so the read fetches it again, and tells what keeps it from that
    }
}

bool SMRepositoryHelper::DoWriteAction(const I18NString& action, const IOHashParam& params) {
    const long before = Revision();
    return m_state->Saved(m_state->save.DoWriteAction(action, params), before);
}

bool SMRepositoryHelper::WriteObject(IOObject& object) {
    const long before = Revision();
    return m_state->Saved(m_state->save.WriteObject(object), before);
}

bool SMRepositoryHelper::CompareStored(IOObject& object) {
    return m_state->save.CompareStored(object);
}

const RemainingInfoEntry* SMRepositoryHelper::doWriteLookUpRemainingInfo(const QvULString& id) const {
    return m_state->save.LookUpRemainingInfo(id);
}

QvSmartPtr<IOParameter> SMRepositoryHelper::GetObjectMapping(const QvULString& elementName) const {
    const qv::CatalogueKind* const kind = qv::FindKind(elementName.utf8());
    if (!kind) return nullptr;
    QvSmartPtr<IOParameter>& mapping = m_state->mappings[static_cast<std::size_t>(kind - qv::CatalogueKinds().data())];
    if (!mapping) mapping = MakeMapping(*kind);
    return mapping;
}

QvXMLFormatTarget* SMRepositoryHelper::DocumentTarget() {
    return &m_state->save.RecordDocument();
}

void SMRepositoryHelper::Describe(const I18NString& author, const I18NString& message) {
    m_state->save.Describe(std::string(author.utf8()), std::string(message.utf8()));
}

void SMRepositoryHelper::ReadAt(long revision) {
    m_state->pinned = true;
    m_state->save.SetBase(revision);
    m_state->reader.Pin(m_state->save.project(), revision);
}

void SMRepositoryHelper::WatchSending(std::function<void(std::size_t, std::size_t)> watcher) {
    m_state->save.WatchSending(std::move(watcher));
}

void SMRepositoryHelper::WatchSaved(std::function<void(long)> watcher) {
    m_state->save.WatchSaved(std::move(watcher));
}

long SMRepositoryHelper::Newest() {
    return qv::Naming(m_state->backend->Name(), [&] {
        const std::optional<qv::ProjectEntry> entry = m_state->session.Project(ProjectNumber());
        return entry ? static_cast<long>(entry->head) : 0;
    });
}

bool SMRepositoryHelper::ReadDocument(QvXMLFormatTarget& target) {
    return qv::Naming(m_state->backend->Name(), [&] {
        const std::optional<qv::RevisionEntry> entry = m_state->session.Revision(ProjectNumber(), Revision());
        if (!entry) throw qv::StoreError("There is no revision " + std::to_string(Revision()) + ".");
        if (!entry->document) return false;
        try {
            qv::DocumentReader(m_state->session, ProjectNumber()).Read(*entry->document, [&](std::string_view text) {
                target.write(text);
            });
        } catch (const qv::StoreError&) {
            m_state->session.RequireRevision(ProjectNumber(), Revision());  // a piece that went with its revision is no damage
            throw;
        }
        return true;
    });
}

std::vector<SMRepositoryChange> SMRepositoryHelper::Compare(IOObject& object) {
    return qv::Naming(m_state->backend->Name(), [&] {
        qv::ChangeList changes;
        if (!m_state->save.Compare(object, changes)) throw qv::StoreError("The comparison with the repository failed; the log tells why.");
        const qv::RowTable& texts = qv::Schema::Get().langText();
        qv::RowArena arena;
        m_state->session.FetchRows(texts, ProjectNumber(), Revision(), arena, [&](const char* row) {
            changes.TextStands(texts, row);
            qv::RowArena::Release(row);
        });
        qv::NameIndex names;
        if (Revision() != 0) names.Fetch(m_state->session, ProjectNumber(), Revision());
        changes.AddNames(names);
        return changes.Build(names);
    });
}

long SMRepositoryHelper::ProjectNumber() const {
    return m_state->save.project();
}

long SMRepositoryHelper::Revision() const {
    return m_state->save.base();
}

bool SMRepositoryHelper::MovedOn() const {
    return m_state->save.MovedOn();
}

const SMRepositoryCounters& SMRepositoryHelper::Counters() const {
    return m_state->session.counters();
}
