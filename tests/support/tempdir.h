#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

/** A folder of its own for one test, gone with it. */
class TempDir {
  public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "smodel-test-XXXXXX").string();
        m_path = ::mkdtemp(pattern.data());
    }
    ~TempDir() { std::filesystem::remove_all(m_path); }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string Path(const std::string& name = "") const { return name.empty() ? m_path : m_path + "/" + name; }
    std::string Write(const std::string& name, std::string_view bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }
    std::string Read(const std::string& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::size_t Files() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_path), std::filesystem::directory_iterator()));
    }

  private:
    std::string m_path;
};

/** For the time of its life, a user who may do nothing in particular, where the tests run as root. */
class WithoutPrivileges {
  public:
    WithoutPrivileges() : m_user(::geteuid()) {
        if (m_user == 0) m_done = ::seteuid(65534) == 0;
    }
    ~WithoutPrivileges() {
        if (m_user == 0 && m_done) m_done = ::seteuid(m_user) == 0;
    }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

  private:
    uid_t m_user;
    bool m_done = true;
};
