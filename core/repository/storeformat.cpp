#include "core/repository/storeformat.h"

#include "core/repository/currentviews.h"
#include "core/repository/schema.h"

namespace qv {

namespace {

/** Formats in the order in which they came. A store tells its own; a build knows how to go on from each older one. */
constexpr std::string_view FIRST_FORMAT = "0.1", SECOND_FORMAT = "1", FORMAT = "2";

void MakeViews(StoreConnection& connection) {
    for (const ViewShape& view : CurrentViews()) connection.MakeView(view);
}

void FillNewStore(StoreConnection& connection) {
    const auto insert = connection.PrepareInsert(Schema::Get().store());
    const Cell row[] = {Cell::Text(STORE_FORMAT), Cell::Text(FORMAT)};
    insert->Add(row);
    insert->Finish();
    MakeViews(connection);
}

std::string FormatOf(StoreConnection& connection) {
    using namespace storetable;
    const auto source = connection.Prepare(Query{&Schema::Get().store(), {value}, {{name, Condition::equal}}});
    const Cell parameters[] = {Cell::Text(STORE_FORMAT)};
    std::string format;
    Cell row[1];
    source->Start(parameters);
    while (source->Next(row)) format = row[0].view;
    return format;
}

/** The first format had no documents and knew nothing of a revision but its moment; the second had no view of roles that needs no quotes.
 */
void BringUp(StoreConnection& connection, std::string_view from) {
    if (from == FIRST_FORMAT) {
        connection.AddColumns(Schema::Get().revisions(), revisiontable::LATER_COLUMNS);
        connection.MakeTable(Schema::Get().pieces());
        return MakeViews(connection);
    }
    for (const ViewShape& view : CurrentViews())
        if (view.name == ITEM_ROLE_VIEW) connection.MakeView(view);
}

void Upgrade(StoreConnection& connection, std::string_view from) {
    using namespace storetable;
    connection.Begin();
    try {
        const auto change =
            connection.Prepare(Change{&Schema::Get().store(), {value}, {{name, Condition::equal}, {value, Condition::equal}}});
        const Cell parameters[] = {Cell::Text(FORMAT), Cell::Text(STORE_FORMAT), Cell::Text(from)};
        // another process may have been faster
        if (change->Run(parameters) == 1) BringUp(connection, from);
        connection.Commit();
    } catch (...) {
        connection.Rollback();
        throw;
    }
}

}  // namespace

void SettleStore(StoreBackend& backend, bool mayCreate) {
    using State = StoreBackend::State;
    const State state = backend.Inspect();
    if (state == State::foreign) throw StoreError("It is no repository of models, so it is left alone. Give another place.");
    if (state == State::absent || state == State::empty) {
        if (!mayCreate)
            throw StoreError(state == State::absent ? "There is no such repository. The first save of a model makes it."
                                                    : "It is empty. The first save of a model makes it a repository.");
        backend.Create(Schema::Get().AllShapes(), FillNewStore);
    }
    const auto connection = backend.Connect();
    std::string format = FormatOf(*connection);
    if (format == FIRST_FORMAT || format == SECOND_FORMAT) {
        Upgrade(*connection, format);
        format = FormatOf(*connection);
    }
    if (format.empty())
        throw StoreError("It does not tell its format: the row '" + std::string(STORE_FORMAT) +
                         "' of REPO_STORE is missing, so it is damaged. Bring back a copy of it.");
    if (format != FORMAT)
        throw StoreError("It has the format " + format + "; this build reads and writes formats up to " + std::string(FORMAT) +
                         ". Use a newer release.");
}

}  // namespace qv
