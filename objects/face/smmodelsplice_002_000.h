#pragma once

#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/text/i18nstring.h"
#include "core/qvutils/xml/limits.h"

namespace schema_002_000 {

/** What becomes of one document when an element of another one comes into it. Elements are known by the numbers of their start tags. */
struct SMSplicePlan {
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

    /** The element that comes, as a number in the document where it stands. */
    std::size_t element = 0;
    /** One of these tells where it goes: before an element, which may be one that goes; behind one; or at the end inside of one. */
    std::size_t before = NONE, behind = NONE, into = NONE;
    /** For `into`: elements that stand around it there, from the outermost inwards. Those that are missing are made. */
    std::deque<I18NString> wrappers;
    /** Elements that go, with all inside. */
    std::set<std::size_t> without;
};

/** A document, and where its elements are from. */
class SM_API SMSplice {
  public:
    /** Raises TklRuntimeError when one of them is no document, or passes a limit. */
    SMSplice(std::string_view document, std::string_view source, const SMSplicePlan& plan, const SMXMLLimits& limits = {});

    const std::string& Document() const { return m_document; }
    struct Origin {
        /** From the source, or else from the document. */
        bool isFromSource = false;
        /** Its number there; NONE for one that was made. */
        std::size_t number = SMSplicePlan::NONE;
    };
    Origin OriginOf(std::size_t number) const;

  private:
    friend class SMSplicer;
    /** Elements in a row whose numbers grow alike. */
    struct Run {
        std::size_t at;
        Origin origin;
    };

    std::string m_document;
    std::vector<Run> m_runs;
};

}  // namespace schema_002_000
