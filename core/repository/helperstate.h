#pragma once

#include <vector>

#include "core/repository/projectreader.h"
#include "core/repository/projectsave.h"
#include "core/repository/smrepositoryhelper.h"

/** What stands behind a context. */
struct SMRepositoryHelper::State {
    State(std::shared_ptr<qv::StoreBackend> store, IOHelper& helper, std::int64_t project, std::int64_t head);

    bool Read(const I18NString& action, const IOHashParam& params, bool fixing, IOArrayParam& results);
    /** Lets reads see what a save has changed. Gives `success` back. */
    bool Saved(bool success, long revisionBefore);

    std::shared_ptr<qv::StoreBackend> backend;
    qv::StoreSession session;
    qv::ProjectReader reader;
    qv::ProjectSave save;
    /** Loads stay with the revision that was asked for. */
    bool pinned = false;
    std::vector<QvSmartPtr<IOParameter>> mappings{qv::CatalogueKinds().size()};
};
