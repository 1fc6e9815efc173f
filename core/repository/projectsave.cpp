#include "core/repository/projectsave.h"

#include <algorithm>
#include <numeric>

#include "core/qvutils/base/stack.h"
#include "core/qvutils/base/qvuuid.h"
#include "core/qvutils/diag/qvlogevent.h"
#include "core/qvutils/params/ionames.h"
#include "core/repository/celldate.h"
#include "core/repository/documents/documentreader.h"

namespace qv {

namespace {

/** Ids of records are cut to this many characters, the owner's id at their beginning with them. */
constexpr std::size_t RECORD_ID_LENGTH = 50;

bool BelongsTo(std::string_view recordId, std::string_view owner) {
    const std::size_t length = std::min({owner.size(), recordId.size(), RECORD_ID_LENGTH});
    return recordId.substr(0, length) == owner.substr(0, length);
}

void TellDoubledId(const IOObject& object, bool isNew) {
    const std::string message = "The id '" + std::string(object.GetId().utf8()) + "' is that of another object; object '" + PathOf(object) +
                                (isNew ? "' gets a new one." : "' keeps the one that it was given before.");
    QvLogEvent(1, "code", "QvOne", "smrepositoryhelper", "SMRepositoryHelper", "WriteObject", 0, I18NString(std::string_view(message)), "")
        .Log();
}

}  // namespace

ProjectSave::ProjectSave(StoreSession& session, IOHelper& helper, std::int64_t project, std::int64_t base)
    : m_schema(Schema::Get()),
      m_session(session),
      m_helper(helper),
      m_project(project),
      m_base(base),
      m_opened(CellOf(QvDate(true)).number),
      m_state(session),
      m_writer(session),
      m_adoption(m_state),
      m_numbers(m_state, m_adoption) {
    m_state.Start(m_project, m_base);
}

void ProjectSave::SetBase(std::int64_t base) {
    if (base == m_base) return;
    m_base = base;
    m_state.Start(m_project, m_base);
}

bool ProjectSave::Fail(const char* method, const std::string& message) {
    m_failed = true;
    QvLogEvent(1, "code", "QvOne", "smrepositoryhelper", "SMRepositoryHelper", method, 0, I18NString(std::string_view(message)), "").Log();
    return false;
}

template <class Work>
bool ProjectSave::Guarded(const char* method, Work&& work) {
    if (m_failed) return false;
    try {
        if (work()) return !m_failed;
        m_failed = true;
    } catch (const StoreError& error) {
        m_movedOn = error.reason() == StoreError::movedOn;
        const std::string moved = "The repository has moved on: revision " + std::to_string(m_base) + " is not the last any more.";
        Fail(method, m_movedOn ? moved : "Repository '" + m_session.Name() + "': " + error.message());
    }
    return false;
}

template <class Work>
bool ProjectSave::RunAsSave(const char* method, IOObject* outermost, Work&& work) {
    const struct Ending {
        ProjectSave& save;
        ~Ending() { save.End(); }
    } ending{*this};
    return Begin(outermost) && Guarded(method, work) && Guarded("WriteObject", [&] {
               if (outermost) EndUnvisited(*outermost);
               Commit();
               return true;
           });
}

bool ProjectSave::Begin(IOObject* outermost) {
    m_running = true;
    m_failed = false;
    m_movedOn = false;
    m_done = false;
    m_projectChanged = false;
    m_writtenUnread.clear();
    m_writer.Start(m_project, m_base);
    if (outermost) m_adoption.Start(*outermost);
    m_numbers.Start(IsOfDocument());
    return Guarded("WriteObject", [&] {
        if (m_project == 0 || m_writer.Comparing()) return true;
        const std::optional<ProjectEntry> entry = m_session.Project(m_project);
        if (!entry || entry->head != m_base) throw StoreError("", StoreError::movedOn);
        return true;
    });
}

void ProjectSave::End() {
    m_writer.Rollback();
    m_document.reset();
    while (m_open > 0) Pop();
    m_looseRecords.Clear();
    m_running = false;
    if (m_done)
        m_state.Settle(m_project, m_base);
    else
        m_state.Start(m_project, m_base);
}

void ProjectSave::Commit() {
    if (m_writer.Comparing()) return;
    RevisionEntry entry;
    entry.author = m_author;
    entry.message = m_message;
    std::vector<DocumentRecorder::Piece> pieces;
    bool sameDocument = true;
    if (m_document) {
        entry.document = m_document->Finish();
        pieces = m_document->TakePieces();
        const std::optional<RevisionEntry> base = m_session.Revision(m_project, m_base);
        sameDocument = base && base->document == entry.document;
    }
    m_done = true;
    if (m_writer.WroteNothing() && sameDocument && pieces.empty()) return;
    m_done = false;
    const std::string* const id = m_projectChanged ? &m_projectId : nullptr;
    const std::string* const name = m_projectChanged ? &m_projectName : nullptr;
    m_writer.Commit(id, name, std::move(entry), pieces);
    m_project = m_writer.project();
    m_base = m_writer.revision();
    m_done = true;
}

void ProjectSave::Describe(std::string author, std::string message) {
    m_author = std::move(author);
    m_message = std::move(message);
}

QvXMLFormatTarget& ProjectSave::RecordDocument() {
    std::unordered_set<std::string> known;
    try {
        if (const std::optional<RevisionEntry> base = m_session.Revision(m_project, m_base); base && base->document) {
            // of those that are there, the ones that the base needs: the others may go with a prune before the save does
            std::unordered_set<std::string> needed;
            DocumentReader(m_session, m_project).Collect(*base->document, needed);
            m_session.EachPiece(m_project, [&](const std::string& digest) { known.insert(needed.extract(digest)); });
        }
    } catch (const StoreError&) {
        known.clear();  // what cannot be read is written anew
    }
    m_document = std::make_unique<DocumentRecorder>(std::move(known));
    return *m_document;
}

bool ProjectSave::WriteObject(IOObject& object) {
    const auto work = [&] { return WriteOne(object); };
    return m_running ? Guarded("WriteObject", work) : RunAsSave("WriteObject", &object, work);
}

bool ProjectSave::WriteOne(IOObject& object) {
    RequireStack();  // an object writes those that it holds
    const RowTable* const table = m_schema.FindByIdColumn(object.GetIdCol().utf8());
    if (!table)
        return Fail("WriteObject", TellRow("?", object.GetId().utf8(), &object) + "no table has the id column '" +
                                       std::string(object.GetIdCol().utf8()) + "'");
    m_state.Rows(*table);
    for (const IdEntry* entry = m_state.ids().Find(object.GetId().utf8()); entry; entry = entry->sameId)
        if (entry->object == &object) return true;
    const bool freshId = SettleId(object, *table);

    IdEntry& entry = m_state.ids().Entry(object.GetId().utf8(), *table);
    entry.object = &object;
    if (Frame* const parent = Top(); parent && parent->object == object.parent) {
        auto list = std::find_if(parent->children.begin(), parent->children.end(), [&](const Children& c) { return c.table == table; });
        if (list == parent->children.end()) list = parent->children.insert(list, Children{table, {}});
        list->ids.push_back(entry.id);
    }

    Frame& frame = Push(object, entry);
    const struct Popper {
        ProjectSave& save;
        ~Popper() { save.Pop(); }
    } popper{*this};
    const int version = object.GetVersionNo();
    if (!WriteRow(object, entry, freshId)) {
        object.SetVersionNo(version);
        return false;
    }
    Close(frame);
    if (m_open == 1) PlaceAmongSiblings(object, entry);
    return true;
}

bool ProjectSave::SettleId(IOObject& object, const RowTable& table) {
    if (!m_adoption.Lacks(object)) return false;
    std::size_t place = 0;
    if (const Frame* const parent = Top(); parent && parent->object == object.parent)
        for (const Children& children : parent->children)
            if (children.table == &table) place = children.ids.size();
    const std::string adopted = m_adoption.IdFor(object, table, place);
    if (!object.GetId().empty()) TellDoubledId(object, adopted.empty());
    object.SetId(adopted.empty() ? QvUUIDGen::Create().GetAsQvULString() : QvULString(std::string_view(adopted)));
    return adopted.empty();
}

bool ProjectSave::WriteRow(IOObject& object, const IdEntry& entry, bool freshId) {
    if (!entry.row) {
        const std::int64_t ended = freshId ? 0 : m_state.EndedVersion(*entry.table, {entry.id, 0, {}, 0});
        object.SetVersionNo(static_cast<int>(std::max<std::int64_t>({object.GetVersionNo(), 1, ended + 1})));
        return object.write_no_seq_inc(m_helper);
    }
    const auto stored = static_cast<int>(rowcodec::Version(entry.row));
    object.SetVersionNo(stored);
    if (!object.compare_write(m_helper)) return object.write_next(m_helper);
    object.SetVersionNo(stored + 1);
    return object.write_no_seq_inc(m_helper);
}

bool ProjectSave::Compare(IOObject& object, ChangeList& changes) {
    if (m_running) return Fail("Compare", "A comparison cannot begin within a save.");
    const struct Comparison {
        RowWriter& writer;
        Comparison(RowWriter& rowWriter, ChangeList& list) : writer(rowWriter) { writer.SetComparison(&list); }
        ~Comparison() { writer.SetComparison(nullptr); }
    } comparison(m_writer, changes);
    return RunAsSave("Compare", &object, [&] { return WriteOne(object); });
}

bool ProjectSave::CompareStored(IOObject& object) {
    bool differs = true;
    const auto work = [&] {
        if (const RowTable* const table = m_schema.FindByIdColumn(object.GetIdCol().utf8())) {
            m_state.Rows(*table);
            differs = Differs(object, *table);
        }
        return true;
    };
    if (!m_running) m_failed = false;
    Guarded("CompareStored", work);
    return differs;
}

bool ProjectSave::Differs(IOObject& object, const RowTable& table) {
    const IdEntry* const entry = m_state.ids().Find(object.GetId().utf8(), table);
    return !entry || !entry->row || RowDiffers(object, table, *entry) || TextsDiffer(object);
}

bool ProjectSave::TextsDiffer(const IOObject& object) {
    const TextDigest texts = TextDigest::Of(object);
    if (texts == TextDigest() && !IsOfDocument()) return false;
    const TextDigest stored = m_state.StoredTexts(object.GetId().utf8());
    // a model that was read from rows lacks those that readers do not ask for, which is no wish to remove them
    return IsOfDocument() ? texts != stored : !texts.FitsWhereItHasAny(stored);
}

bool ProjectSave::RowDiffers(IOObject& object, const RowTable& table, const IdEntry& entry) {
    const std::optional<Cell> number = m_numbers.For(object, table, &entry);
    if (!m_state.ReadAttributes(table, object).empty()) return true;  // the insert tells what is wrong
    AttributeReader& attributes = m_state.Attributes(table);
    if (number) attributes.cells[static_cast<std::size_t>(table.orderColumn)] = *number;
    const auto same = [&] { return rowcodec::SameBody(table, attributes.head.parentId, attributes.cells, entry.row); };
    if (same()) return false;
    const bool kept = KeepStored(table, entry.row, attributes.cells), undated = DropDateOfReading(table, entry.row, attributes.cells);
    return !(kept || undated) || !same();
}

bool ProjectSave::DropDateOfReading(const RowTable& table, const char* stored, std::vector<Cell>& cells) const {
    for (const std::size_t column : table.body) {
        if (table.columns[column]->name != "LASTCHANGED") continue;
        if (rowcodec::BodyCell(table, stored, column).kind != Cell::null || cells[column].number < m_opened) return false;
        cells[column] = {};
        return true;
    }
    return false;
}

bool ProjectSave::KeepStored(const RowTable& table, const char* stored, std::vector<Cell>& cells) {
    bool kept = false;
    for (const std::size_t column : table.body) {
        const Comparing comparing = table.columns[column]->comparing;
        if ((comparing != Comparing::unlessUnset && comparing != Comparing::emptyAsUnset) || cells[column].kind != Cell::null) continue;
        const Cell cell = rowcodec::BodyCell(table, stored, column);
        if (cell.kind == Cell::null || (comparing == Comparing::emptyAsUnset && !cell.view.empty())) continue;
        cells[column] = cell;
        kept = true;
    }
    return kept;
}

ProjectSave::Frame& ProjectSave::Push(IOObject& object, IdEntry& entry) {
    if (m_open == m_frames.size()) m_frames.emplace_back();
    Frame& frame = m_frames[m_open++];
    frame.object = &object;
    frame.entry = &entry;
    return frame;
}

void ProjectSave::Pop() {
    Frame& frame = m_frames[--m_open];
    frame.children.clear();
    frame.records.Clear();
}

void ProjectSave::Close(Frame& frame) {
    const std::string_view id = frame.entry->id;
    for (const Children& children : frame.children) {
        CloseOrder(id, *children.table, children.ids);
        for (const UnreadChild& unread : UnreadChildren())
            if (frame.entry->table->name() == unread.parentTable && children.table->name() == unread.childTable)
                m_writtenUnread.insert(std::string(id) + '\0' + std::string(unread.childTable));
    }
    if (m_state.empty()) return;
    frame.records.Load(m_state, id);
    frame.records.EndRest(m_state, m_writer);
}

void ProjectSave::CloseOrder(std::string_view parent, const RowTable& table, const std::vector<std::string_view>& ids) {
    const SiblingOrder::Record* const record = m_state.empty() ? nullptr : m_state.Order().Find(parent, table.name());
    if (!record && std::is_sorted(ids.begin(), ids.end())) return;
    std::vector<std::size_t> places;
    m_state.Order().Arrange(record, ids, places);
    if (std::is_sorted(places.begin(), places.end())) return;
    m_state.NoteOrder();
    if (record) m_writer.EndOrder(parent, table.name(), record->first);
    m_writer.Order(parent, table, SiblingOrder::Join(ids));
}

void ProjectSave::PlaceAmongSiblings(const IOObject& object, const IdEntry& entry) {
    if (m_state.empty() || !object.parent) return;
    const std::string_view parent = object.parent->GetId().utf8();
    if (entry.row && rowcodec::ParentId(*entry.table, entry.row) == parent) return;
    std::vector<std::string_view> ids;
    for (const char* const row : m_state.Below(*entry.table, parent)) ids.push_back(rowcodec::Id(row));
    ids.push_back(entry.id);
    CloseOrder(parent, *entry.table, ids);
}

bool ProjectSave::DoWriteAction(const I18NString& action, const IOHashParam& params) {
    const auto work = [&] {
        try {
            return Dispatch(action, params);
        } catch (const IOParamException& error) {
            return Fail("DoWriteAction", error.what());
        }
    };
    return m_running ? Guarded("DoWriteAction", work) : RunAsSave("DoWriteAction", nullptr, work);
}

bool ProjectSave::Dispatch(const I18NString& action, const IOHashParam& params) {
    if (action == IOAction::AT_InsertObject) return Insert(params);
    if (action == IOAction::AT_WriteLangText) return InsertText(params);
    if (action == IOAction::AT_WriteRemainingInfo) return InsertRecord(params);
    return Fail("DoWriteAction", "There is no action '" + std::string(action.utf8()) + "' of writing.");
}

bool ProjectSave::Insert(const IOHashParam& params) {
    const I18NString name = params.GetByName(IOParamTag::TABLE_NAME)->GetQvStringValue();
    const RowTable* const table = m_schema.Find(name.utf8());
    Frame* const frame = Top();
    IOObject* const object = frame ? frame->object : nullptr;
    if (!table || table == &m_schema.remainInfo() || table == &m_schema.langText())
        return Fail("DoWriteAction",
                    TellRow(name.utf8(), object ? object->GetId().utf8() : "", object) + "there is no such table of objects");
    m_state.Rows(*table);
    const std::optional<Cell> number = frame ? m_numbers.For(*object, *table, frame->entry) : std::nullopt;
    AttributeReader& attributes = m_state.Attributes(*table);
    const std::string fault = attributes.Read(*params.GetByName(IOParamTag::ATTRIBUTES));
    if (!fault.empty()) return Fail("DoWriteAction", TellRow(name.utf8(), attributes.head.id, object) + "the table " + fault);
    if (number) attributes.cells[static_cast<std::size_t>(table->orderColumn)] = *number;

    IdEntry& entry = m_state.ids().Entry(attributes.head.id, *table);
    if (frame && (frame->entry != &entry))
        return Fail("DoWriteAction", TellRow(name.utf8(), attributes.head.id, object) + "the row is not that of the object being written");
    if (entry.row) {
        KeepStored(*table, entry.row, attributes.cells);
        m_writer.End(*table, entry.row);
    }
    if (table->name() == "SM_PROJECT") {
        m_projectChanged = true;
        m_projectId = attributes.head.id;
        m_projectName = attributes.cells[static_cast<std::size_t>(table->nameColumn)].view;
    }
    RowUse row(rowcodec::Encode(m_arena, *table, attributes.head, attributes.cells));
    m_state.NoteRow(entry, row.get());
    m_writer.Insert(*table, row.HandOn(), object);
    return true;
}

bool ProjectSave::InsertText(const IOHashParam& params) {
    const RowTable& table = m_schema.langText();
    IOObject* const object = Top() ? Top()->object : nullptr;
    AttributeReader& attributes = m_state.Attributes(table);
    const std::string fault = attributes.Read(*params.GetByName(IOParamTag::ATTRIBUTES));
    if (!fault.empty()) return Fail("DoWriteAction", TellRow(table.name(), attributes.head.id, object) + "the table " + fault);
    const auto cell = [&](std::size_t at) { return attributes.cells[at].view; };
    TextDigest digest;
    digest.Add(cell(0), cell(1), cell(2));
    m_state.NoteText(attributes.head.id, digest);
    m_writer.Insert(table, rowcodec::Encode(m_arena, table, attributes.head, attributes.cells), object);
    return true;
}

bool ProjectSave::InsertRecord(const IOHashParam& params) {
    const RowTable& table = m_schema.remainInfo();
    Frame* const frame = Top();
    IOObject* const object = frame ? frame->object : nullptr;
    AttributeReader& attributes = m_state.Attributes(table);
    const std::string fault = attributes.Read(*params.GetByName(IOParamTag::ATTRIBUTES));
    if (!fault.empty()) return Fail("DoWriteAction", TellRow(table.name(), attributes.head.parentId, object) + "the table " + fault);
    const bool own = frame && frame->entry->id == attributes.head.parentId;
    OwnerRecords& records = own ? frame->records : m_looseRecords;
    if (!own) {
        records.Clear();
        m_state.NoteUnknown();
    }
    records.Load(m_state, attributes.head.parentId);
    records.Write(m_state, m_writer, m_arena, object);
    return true;
}

const RemainingInfoEntry* ProjectSave::LookUpRemainingInfo(const QvULString& id) {
    bool known = false;
    const auto work = [&] {
        Frame* const frame = Top();
        const bool own = frame && BelongsTo(id.utf8(), frame->entry->id);
        OwnerRecords& records = own ? frame->records : m_looseRecords;
        if (!own) records.Clear();
        records.Load(m_state, own ? frame->entry->id : id.utf8().substr(0, id.utf8().rfind('/')));
        known = records.LookUp(id.utf8(), m_entry);
        return true;
    };
    if (!m_running) m_failed = false;
    Guarded("doWriteLookUpRemainingInfo", work);
    return known ? &m_entry : nullptr;
}

}  // namespace qv
