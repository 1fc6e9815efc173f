#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/qvutils/text/qvstringformat.h"
#include "core/repository/memory/memorybackend.h"
#include "core/repository/smrepository.h"
#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/face/smmodelstore_002_000.h"

using namespace schema_002_000;

namespace {

/** What an input makes of the rows as they are read: by the number of a row in the order of reading, edits of its cells. */
class Edits {
  public:
    // each edit: two bytes for the row, one for the column, a letter for what becomes of it, and a text up to NUL
    explicit Edits(std::string_view input) {
        while (input.size() >= 4) {
            const auto byte = [&](std::size_t at) { return static_cast<std::size_t>(static_cast<unsigned char>(input[at])); };
            const std::size_t row = byte(0) * 256 + byte(1), column = byte(2);
            const char what = input[3];
            input.remove_prefix(4);
            m_edits.emplace(row, Edit{column, what, std::string(fuzz::TakePart(input))});
        }
    }

    enum class Fate { keep, drop, repeat };
    Fate Apply(std::span<qv::Cell> row) {
        Fate fate = Fate::keep;
        const auto [first, last] = m_edits.equal_range(m_next++);
        for (auto edit = first; edit != last; ++edit) {
            qv::Cell& cell = row[edit->second.column % row.size()];
            const std::string& text = edit->second.text;
            switch (edit->second.what) {
            case 'd': fate = Fate::drop; break;
            case 'r': fate = Fate::repeat; break;
            case 'i': cell = qv::Cell::Number(QvStringFormat::GetInstance()->_string2long(I18NString(std::string_view(text)))); break;
            case 'n': cell = qv::Cell(); break;
            case 'c': cell = row[text.size() % row.size()]; break;
            default: cell = qv::Cell::Text(text); break;
            }
        }
        return fate;
    }

  private:
    struct Edit {
        std::size_t column;
        char what;
        std::string text;
    };
    std::multimap<std::size_t, Edit> m_edits;
    std::size_t m_next = 0;
};

class EditedSource : public qv::RowSource {
  public:
    EditedSource(std::unique_ptr<qv::RowSource> inner, std::shared_ptr<Edits> edits)
        : m_inner(std::move(inner)), m_edits(std::move(edits)) {}
    void Start(std::span<const qv::Cell> parameters) override {
        m_repeats = false;
        m_inner->Start(parameters);
    }
    bool Next(std::span<qv::Cell> row) override {
        if (std::exchange(m_repeats, false)) {
            std::copy(m_last.begin(), m_last.end(), row.begin());
            return true;
        }
        Edits::Fate fate = Edits::Fate::drop;
        while (fate == Edits::Fate::drop) {
            if (!m_inner->Next(row)) return false;
            fate = m_edits->Apply(row);
        }
        m_last.assign(row.begin(), row.end());
        m_repeats = fate == Edits::Fate::repeat;
        return true;
    }

  private:
    std::unique_ptr<qv::RowSource> m_inner;
    std::shared_ptr<Edits> m_edits;
    std::vector<qv::Cell> m_last;
    bool m_repeats = false;
};

/** A store that gives its rows as the edits have them, and takes none. */
class EditedConnection : public qv::StoreConnection {
  public:
    EditedConnection(std::unique_ptr<qv::StoreConnection> inner, std::shared_ptr<Edits> edits)
        : m_inner(std::move(inner)), m_edits(std::move(edits)) {}
    std::unique_ptr<qv::RowSource> Prepare(const qv::Query& query) override {
        return std::make_unique<EditedSource>(m_inner->Prepare(query), m_edits);
    }
    std::unique_ptr<qv::RowChange> Prepare(const qv::Change&) override { throw Refusal(); }
    std::unique_ptr<qv::RowChange> Prepare(const qv::Removal&) override { throw Refusal(); }
    std::unique_ptr<qv::RowInsert> PrepareInsert(const qv::TableShape&) override { throw Refusal(); }
    void MakeTable(const qv::TableShape&) override { throw Refusal(); }
    void AddColumns(const qv::TableShape&, std::size_t) override { throw Refusal(); }
    void MakeView(const qv::ViewShape&) override { throw Refusal(); }
    void Begin() override { m_inner->Begin(); }
    void Commit() override { m_inner->Commit(); }
    void Rollback() noexcept override { m_inner->Rollback(); }

  private:
    static qv::StoreError Refusal() { return qv::StoreError("the store can only be read"); }

    std::unique_ptr<qv::StoreConnection> m_inner;
    std::shared_ptr<Edits> m_edits;
};

/** A store with one project of two revisions, in which there is an object of each kind. */
std::shared_ptr<qv::StoreBackend> MakeStore() {
    std::shared_ptr<qv::StoreBackend> backend = qv::MakeMemoryBackend("memory");
    SMRepository repository(backend, SMRepository::createIfAbsent);
    const fuzz::Model model = fuzz::LoadModel(fuzz::EveryKind());
    fuzz::Require(SMPutModel(*model.project, *repository.NewProject()).IsDone(), "the first revision can be stored");
    model.project->SetName("another name");
    fuzz::Require(SMPutModel(*model.project, *repository.OpenProject(1)).IsDone(), "the second revision can be stored");
    return backend;
}

class EditedBackend : public qv::StoreBackend {
  public:
    explicit EditedBackend(std::string_view input) : m_edits(std::make_shared<Edits>(input)) {}
    std::string Name() const override { return "edited"; }
    State Inspect() override { return State::tables; }
    void Create(std::span<const qv::TableShape>, void (*)(qv::StoreConnection&)) override {}
    std::unique_ptr<qv::StoreConnection> Connect() override {
        static const auto& store = *new std::shared_ptr<qv::StoreBackend>(MakeStore());
        return std::make_unique<EditedConnection>(store->Connect(), m_edits);
    }

  private:
    std::shared_ptr<Edits> m_edits;
};

void ReadAll(SMRepository& repository, char how) {
    const auto context = repository.OpenProject(1);
    switch (how) {
    case 'h':
        for (const SMRepositoryChange& change : repository.Changes(1, 0, 2)) repository.RevisionsOf(1, change.id);
        repository.Revisions(1);
        break;
    case 'b':
        repository.Changes(1, 1, 2);
        repository.Blame(1, "i1");
        break;
    case 'f':
        for (const long revision : {1, 2}) repository.Faults(1, revision);
        repository.CountChanges(1, 0, 2);
        repository.CountChanges(1, 1, 2);
        repository.LastRevisionsOf(1, {"everything", "gone"});
        break;
    case 't': {
        I18NString text;
        QvStringWriter writer(text);
        context->ReadDocument(writer);
        break;
    }
    case 'o': context->ReadAt(1); [[fallthrough]];
    default: {
        const SMGetResult got = SMGetModel(*context);
        fuzz::RequireReason(got);
        if (!got.IsDone()) return;
        fuzz::CanonicalText(*got.project);
        if (how == 'c') context->Compare(*got.project);
    }
    }
}

}  // namespace

// the letter of a reader, then edits
void fuzz::Rows(std::string_view input) {
    if (input.empty()) return;
    try {
        SMRepository repository(std::make_shared<EditedBackend>(input.substr(1)));
        ReadAll(repository, input.front());
    } catch (const TklRuntimeError& error) {
        Require(std::string_view(error.what()).size() > 8, "an error says what is wrong");
    }
}
