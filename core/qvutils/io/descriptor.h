#pragma once

#include <utility>

#include <unistd.h>

namespace qv {

/** Owns an open file; -1 stands for none. */
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int file) noexcept : m_file(file) {}
    Descriptor(Descriptor&& other) noexcept : m_file(std::exchange(other.m_file, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_file, other.m_file);
        return *this;
    }
    ~Descriptor() {
        if (m_file >= 0) ::close(m_file);
    }
    int Get() const noexcept { return m_file; }
    explicit operator bool() const noexcept { return m_file >= 0; }

  private:
    int m_file = -1;
};

}  // namespace qv
