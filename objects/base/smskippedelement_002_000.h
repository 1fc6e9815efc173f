#pragma once

#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

/**
 * Stands in for the builder of an object that this library does not read: logs the element once and swallows it to its end, so
 * that the names and ids inside do not land on the container.
 */
class SMSkippedElementBuilder : public QvXmlBuildBase {
  public:
    explicit SMSkippedElementBuilder(const I18NString& tag);
    void realStartElement(const I18NString&, const I18NString&, const I18NString&, const QvXMLAttributes&) override {}
    void realCharacters(const I18NString&) override {}
    void realEndElement(const I18NString&, const I18NString&, const I18NString&) override {}
};

}  // namespace schema_002_000
