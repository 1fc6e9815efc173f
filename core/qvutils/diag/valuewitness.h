#pragma once

#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace qv {

/**
 * Is told of texts that a reader takes for something else than they say, as long as it lives and on its thread. Nothing of that is in
 * the log: the reader goes on with what it made of the text. Witnesses nest; the innermost one is told.
 */
class SM_API ValueWitness {
  public:
    enum class What {
        /** The name of an element that is not in the vocabulary, and is taken for one that is. */
        name,
        /** Reads as unset, or is taken for another word of the vocabulary. */
        enumerator,
        /** Reads as unset, or is taken for what it is without its fraction of a second and its zone. */
        date,
        /** Reads as zero, or is not read. */
        number,
        /** Reads as false. */
        truth,
    };

    ValueWitness();
    virtual ~ValueWitness();
    ValueWitness(const ValueWitness&) = delete;
    ValueWitness& operator=(const ValueWitness&) = delete;
    /** `taken` is what the text is taken for; empty when there is none. */
    virtual void Tell(What what, std::string_view text, std::string_view taken) = 0;
    /** Of the calling thread; null when there is none. */
    static ValueWitness* Innermost();

  private:
    ValueWitness* m_outer;
};

/** An empty text says nothing, and is not told. */
inline void TellMisread(ValueWitness::What what, std::string_view text, std::string_view taken = {}) {
    ValueWitness* const witness = text.empty() ? nullptr : ValueWitness::Innermost();
    if (witness) witness->Tell(what, text, taken);
}

}  // namespace qv
