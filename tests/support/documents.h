#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/xml/qvcontenthandler.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"

namespace smtest {

using ProjectPtr = QvSmartPtr<schema_002_000::SMProject2>;

/** A model document in the form in which the library writes it; only what a test is about has to be given. */
struct Document {
    std::string id = "", name = "", defaultLocale = "";
    std::vector<std::string> locales = {};
    /** Elements: the root namespace, and what stands inside the sections. */
    std::string root = "", dataSources = "", parameterMaps = "", securityViews = "", packages = "";
    /** Attributes of the section "dataSources", with a blank before each. */
    std::string dataSourcesAttributes = "";

    std::string Text() const;
};

/** A namespace element with one name in "en"; `content` follows its properties. */
std::string NamespaceElement(std::string_view name, std::string_view content = "");
std::string FolderElement(std::string_view name, std::string_view content = "");
/** The frame of these elements: no date, id, version 0. */
std::string SectionElement(std::string_view tag, std::string_view name, std::string_view content);

/** A project whose default locale is "en". */
ProjectPtr NewProject();
/** The same with a root namespace. */
ProjectPtr NewProject(const char* rootName);

/** Reads a document into a new project. A document that does not parse raises. */
ProjectPtr ParseProject(const std::string& document);
void ParseInto(QvContentHandler& handler, const std::string& document);
/** Sends the elements of a text, which may be several, to a builder that stands inside their parent. */
void ParseInside(QvContentHandler& builder, const std::string& elements);

std::string WriteProject(const schema_002_000::SMProject2& project, IOHelper* helper = nullptr);
/** One element, without a declaration. For a project: the whole element "project". */
std::string WriteElement(const schema_002_000::SMObjectBase& object, bool indent = false);
/** What `print(handler)` prints. */
template <class Print>
std::string Printed(Print print) {
    I18NString text;
    QvStringWriter writer(text);
    QvSAX2PrintHandler handler("UTF-8", false, writer, true);
    print(&handler);
    return text.c_str();
}

/** The same bytes? If not, shows where, element by element. */
testing::AssertionResult SameXml(const std::string& expected, const std::string& actual);

std::string ReadFile(const std::string& path);

inline std::string Str(const I18NString& text) {
    return std::string(text.utf8());
}

}  // namespace smtest

/** How the library's texts look in the messages of tests. */
void PrintTo(const I18NString& text, std::ostream* out);
void PrintTo(const QvULString& text, std::ostream* out);
void PrintTo(const QvDate& date, std::ostream* out);
