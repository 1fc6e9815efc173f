#include "tests/support/storecheck.h"

#include <algorithm>
#include <map>
#include <vector>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/text/tklbytebuffer.h"
#include "core/repository/smrepository.h"
#include "tests/core/repository/testnode.h"

namespace {

constexpr std::int64_t STANDS = INT64_MAX;

/** The time a row has stood. */
struct Span {
    std::int64_t first, end;
};

struct Columns {
    std::vector<std::size_t> asked;
    /** How many of them tell which thing a row is about. */
    std::size_t names = 0;
};

/** The columns that name a thing whatever its version, and behind them the revisions of a row. Empty for a table without revisions. */
Columns ColumnsOf(const qv::TableShape& shape) {
    const auto find = [&](std::string_view name) {
        std::size_t at = 0;
        while (at < shape.columns.size() && shape.columns[at].name != name) ++at;
        return at;
    };
    const std::size_t first = find("FIRST_REVISION"), end = find("END_REVISION");
    Columns columns;
    if (end == shape.columns.size()) return columns;
    for (const std::size_t part : shape.key)
        if (part != first && !shape.columns[part].name.ends_with("VERSION_NO")) columns.asked.push_back(part);
    columns.names = columns.asked.size();
    columns.asked.insert(columns.asked.end(), {first, end});
    return columns;
}

/** The spans of each thing, which is known by its project and a text. */
std::map<std::pair<std::int64_t, std::string>, std::vector<Span>> SpansOf(qv::StoreConnection& connection, const qv::TableShape& shape) {
    std::map<std::pair<std::int64_t, std::string>, std::vector<Span>> spans;
    const Columns columns = ColumnsOf(shape);
    if (columns.asked.empty()) return spans;
    const auto source = connection.Prepare(qv::Query{&shape, columns.asked, {}});
    std::vector<qv::Cell> row(columns.asked.size());
    source->Start({});
    while (source->Next(row)) {
        std::string name;
        for (std::size_t at = 1; at < columns.names; ++at)
            name += (row[at].kind == qv::Cell::text ? std::string(row[at].view) : std::to_string(row[at].number)) + "/";
        const qv::Cell& end = row[columns.names + 1];
        spans[{row[0].number, name}].push_back({row[columns.names].number, end.kind == qv::Cell::null ? STANDS : end.number});
    }
    return spans;
}

std::string SpanFaults(const std::string& thing, std::vector<Span>& spans, long head) {
    std::string faults;
    std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.first < b.first; });
    std::int64_t before = 0;
    for (const Span& span : spans) {
        if (span.first > head || (span.end != STANDS && span.end > head)) faults += thing + " is of a revision that does not stand\n";
        if (span.first < before || span.end <= span.first) faults += thing + " has two versions at one time\n";
        before = span.end;
    }
    return faults;
}

std::string LoadFaults(SMRepository& repository, long project, const SMRepositoryRevision& revision) {
    const std::string where = "revision " + std::to_string(revision.number) + " ";
    CaughtLog log;
    try {
        const auto context = repository.OpenProject(project);
        context->ReadAt(revision.number);
        if (!ReadTestProject(*context)) return where + "cannot be loaded: " + log.Only() + "\n";
        TklByteBuffer bytes;
        QvByteBufferWriter writer(bytes);
        if (context->ReadDocument(writer) != revision.hasDocument) return where + "has lost its document\n";
    } catch (const TklRuntimeError& error) {
        return where + error.what() + "\n";
    }
    return {};
}

std::string ProjectFaults(SMRepository& repository, const SMRepositoryProject& project) {
    const std::vector<SMRepositoryRevision> revisions = repository.Revisions(project.number);
    const std::string where = "project " + std::to_string(project.number) + ": ";
    if (revisions.empty() || revisions.back().number != project.revision) return where + "its newest revision is not there\n";
    std::string faults;
    for (std::size_t at = 1; at < revisions.size(); ++at)
        if (revisions[at].number != revisions[at - 1].number + 1) faults += where + "a revision is missing\n";
    faults += LoadFaults(repository, project.number, revisions.front());
    if (revisions.size() > 1) faults += LoadFaults(repository, project.number, revisions.back());
    return faults;
}

}  // namespace

std::string StoreFaults(SMRepository& repository, qv::StoreBackend& backend, const StoreTables& tables) {
    std::string faults;
    std::map<std::int64_t, long> heads;
    try {
        for (const SMRepositoryProject& project : repository.Projects()) {
            heads[project.number] = project.revision;
            faults += ProjectFaults(repository, project);
        }
        const auto connection = backend.Connect();
        for (const qv::TableShape& shape : tables)
            for (auto& [thing, spans] : SpansOf(*connection, shape))
                faults += SpanFaults(shape.name + " " + thing.second, spans, heads.count(thing.first) ? heads[thing.first] : 0);
    } catch (const TklRuntimeError& error) {
        faults += error.what();
    }
    return faults;
}
