#pragma once

#include <cstdlib>
#include <string>

#include "bench/support/itemdocument.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/repository/smrepository.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"

namespace bench {

/** The document to store: of query items that have everything, or the one that SMODEL_BENCH_MODEL names. */
inline QvSmartPtr<schema_002_000::SMProject2> StoredModel() {
    constexpr std::size_t BYTES = 10'000'000;
    QvSmartPtr<schema_002_000::SMProject2> project = new schema_002_000::SMProject2();
    schema_002_000::SMProjectBuilder builder(project);
    QvSAX2Parser parser;
    parser.setContentHandler(&builder);
    if (const char* path = std::getenv("SMODEL_BENCH_MODEL")) {
        parser.parse(I18NString(path));
    } else {
        const std::string document = ItemDocument(BYTES);
        parser.parse(document.data(), document.size());
    }
    return project;
}

/** Puts it as a new project into a new store. */
inline void PutNew(const std::string& location, schema_002_000::SMProject2& project) {
    SMRepository repository(location, SMRepository::createIfAbsent);
    const auto context = repository.NewProject();
    if (!project.write(*context)) std::abort();
}

}  // namespace bench
