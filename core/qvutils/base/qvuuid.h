#pragma once

#include <array>
#include <cstdint>

#include "core/qvutils/text/qvulstring.h"

/** A unique id: 16 bytes, 36 characters of text in lower case. */
class SM_API QvUUID {
  public:
    QvULString GetAsQvULString() const;
    bool operator==(const QvUUID& other) const noexcept = default;

  private:
    friend class QvUUIDGen;
    std::array<std::uint8_t, 16> m_bytes{};
};

/**
 * Makes ids that grow with time (UUID version 7; within one process each is greater than the one before): rows keyed by them
 * go to the end of an index, which makes a save some three times cheaper than random ids do. Safe from any thread.
 */
class SM_API QvUUIDGen {
  public:
    static QvUUID Create();
};
