#pragma once

#include <random>
#include <string>

#include "core/qvutils/base/qvdate.h"

namespace schema_002_000 {
class SMNameDescObject2;
class SMNamedObject2;
class SMObjectBase;
}  // namespace schema_002_000

namespace smtest {

/**
 * What objects are filled with: by default the same readable values each time, each field with one of its own; made from a number,
 * random ones.
 */
class Values {
  public:
    Values() = default;
    explicit Values(unsigned seed) : m_random(true), m_engine(seed) {}

    bool AreRandom() const { return m_random; }
    /** Unlike every other id, or name, of these values. */
    std::string Id();
    std::string Name(const std::string& what);
    /** `what` says what the text is for, and is the text where values are fixed. A random text may be empty. */
    std::string Text(const std::string& what);
    bool Flag() { return !m_random || Below(2) == 1; }
    /** From 1 on. */
    int Number(int fixed) { return m_random ? 1 + Below(99) : fixed; }
    /** How many of something there are. */
    int Count(int fixed) { return m_random ? Below(4) : fixed; }
    QvDate Date();
    /** One of a few enumerators, whose numbers go from 0 up to but not including `end`. */
    int Choice(int fixed, int end) { return m_random ? Below(end) : fixed; }

  private:
    int Below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(m_engine); }

    bool m_random = false;
    std::mt19937 m_engine;
    int m_ids = 0, m_names = 0, m_dates = 0;
};

/** Names in three locales, the default one first; the warehouse link. */
void FillNames(schema_002_000::SMNamedObject2& object, Values& values);
/** Also descriptions and screen tips. */
void FillTexts(schema_002_000::SMNameDescObject2& object, Values& values);
/** Id, version, custom properties and, at last, the date, which other fills would stamp. */
void FillBase(schema_002_000::SMObjectBase& object, Values& values);
/** The same but for custom properties, for classes that have no place for them. */
void FillIdentity(schema_002_000::SMObjectBase& object, Values& values);

}  // namespace smtest
