#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/repository/smrepository.h"
#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

/** A subject with items; each is a name. */
inline std::string SubjectElement(const std::string& name, const std::vector<std::string>& items) {
    std::string content = "<name locale=\"en\">" + name + "</name>";
    for (const std::string& item : items)
        content += "<queryItem><name locale=\"en\">" + item + "</name><expression>" + item + " + 1</expression></queryItem>";
    return "<querySubject>" + content + "</querySubject>";
}

/** A repository in a directory of its own, with commands on it; at its end it must be sound. */
class ToolRepository {
  public:
    ToolRepository() = default;
    ~ToolRepository() {
        if (leftUnverified || testing::Test::HasFailure() || (m_location.empty() && directory.Files().empty())) return;
        try {
            for (const SMRepositoryProject& project : SMRepository(Location()).Projects()) {
                const ToolRun run = Run("verify", {"--all", "--project", std::string(project.id.utf8())});
                EXPECT_EQ(run.status, 0) << run.out << run.err;
            }
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
    }
    ToolRepository(const ToolRepository&) = delete;
    ToolRepository& operator=(const ToolRepository&) = delete;
    std::string Location() const { return m_location.empty() ? directory.Path("r.db") : m_location; }
    void SetLocation(const std::string& location) { m_location = location; }
    /** "repo WORD REPO REST". */
    ToolRun Run(const std::string& word, const std::vector<std::string>& rest = {}, const std::string& input = {}) const {
        std::vector<std::string> words{"repo", word, Location()};
        words.insert(words.end(), rest.begin(), rest.end());
        return RunTool(words, input);
    }
    ToolRun Put(const std::string& document, std::vector<std::string> rest = {}) const {
        rest.insert(rest.begin(), "-");
        return Run("put", rest, document);
    }
    std::string Get(const std::string& at = {}) const {
        return Run("get", at.empty() ? std::vector<std::string>{"-o", "-"} : std::vector<std::string>{"-o", "-", "--at", at}).out;
    }

    TestDirectory directory;
    /** Set by tests that write rows that no put would, that put what rows alone keep, or so much that it takes too long. */
    mutable bool leftUnverified = false;

  private:
    std::string m_location;
};

inline std::string Formatted(const std::string& document) {
    return RunTool({"fmt", "-"}, document).out;
}

/** Changes a store by hand; gives how many rows. */
inline int ChangeByHand(const ToolRepository& repository, const std::string& statement) {
    sqlite3* database = nullptr;
    repository.leftUnverified = true;
    EXPECT_EQ(sqlite3_open(repository.Location().c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    const int rows = sqlite3_changes(database);
    sqlite3_close(database);
    return rows;
}

inline std::string SalesModel(const std::string& content) {
    return ModelDocument(NamespaceElement("Sales", content));
}

/** Takes a while to put. */
inline std::string BigModel(int namespaces) {
    std::string content;
    for (int at = 0; at < namespaces; ++at) content += NamespaceElement("n" + std::to_string(at));
    return ModelDocument(NamespaceElement("root", content));
}
