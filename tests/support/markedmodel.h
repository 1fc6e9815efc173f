#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/facemodel.h"

/** A document with a mark where something is to be found. */
class Marked {
  public:
    explicit Marked(std::string document) : m_text(std::move(document)) {
        const std::size_t at = m_text.find('@');
        EXPECT_NE(at, std::string::npos);
        m_text.erase(at, 1);
        line = 1 + std::count(m_text.begin(), m_text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
        column = static_cast<long>(at - m_text.rfind('\n', at));
    }
    const std::string& Text() const { return m_text; }
    long line = 0, column = 0;

  private:
    std::string m_text;
};

inline std::string Named(const std::string& tag, const std::string& name, const std::string& content = "",
                         const std::string& attributes = "") {
    return "<" + tag + attributes + "><name locale=\"en\">" + name + "</name>" + content + "</" + tag + ">\n";
}

/** A document whose root namespace "n" holds these elements. */
inline Marked In(const std::string& content, const std::string& inProject = "") {
    return Marked(ModelDocument("\n" + Named("namespace", "n", "\n" + content) + inProject));
}

inline std::string Id(const std::string& id) {
    return "<property name=\"id\" type=\"hidden\">" + id + "</property>";
}

inline std::string Relationship(const std::string& left, const std::string& right) {
    return Named("querySubject", "s") + "<relationship><name>r</name>" + left + right + "</relationship>\n";
}

inline std::string End(const std::string& tag, const std::string& cardinalities, const std::string& subject = "[n].[s]") {
    return "<" + tag + "><refobj>" + subject + "</refobj>" + cardinalities + "</" + tag + ">";
}

inline const std::string ONE_TO_MANY = "<mincard>one</mincard><maxcard>many</maxcard>";
