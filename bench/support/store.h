#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace bench {

/** A store of its own in a folder of its own, gone with the object. */
class Store {
  public:
    Store() {
        char name[] = "/tmp/smodel-bench-XXXXXX";
        if (!mkdtemp(name)) std::abort();
        m_folder = name;
    }
    ~Store() { std::filesystem::remove_all(m_folder); }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    std::string Path() const { return m_folder + "/store.db"; }
    void Remove() const {
        for (const auto& file : std::filesystem::directory_iterator(m_folder)) std::filesystem::remove(file);
    }

  private:
    std::string m_folder;
};

}  // namespace bench
