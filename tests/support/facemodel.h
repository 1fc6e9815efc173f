#pragma once

#include <string>

#include "objects/face/smmodeldocument_002_000.h"

/** A document with what stands inside its project element. */
inline std::string ModelDocument(const std::string& content) {
    return "<?xml version=\"1.0\"?>\n<project id=\"p\"><name>Test</name><locales><locale>en</locale></locales>"
           "<defaultLocale>en</defaultLocale>" +
           content + "</project>";
}

/** A namespace with its English name. */
inline std::string NamespaceElement(const std::string& name, const std::string& content = {}) {
    return "<namespace><name locale=\"en\">" + name + "</name>" + content + "</namespace>";
}

/** A parameter map with one entry. */
inline std::string MapElement(const std::string& name, const std::string& value) {
    return "<parameterMaps><parameterMap hidden=\"false\"><name>" + name +
           "</name><parameterMapEntry id=\"e1\" version=\"1\"><key>k</key><value>" + value +
           "</value></parameterMapEntry></parameterMap></parameterMaps>";
}

/** The canonical text of a model. */
inline std::string CanonicalText(const schema_002_000::SMProject2& project) {
    I18NString text;
    QvStringWriter writer(text);
    schema_002_000::SMWriteModel(project, writer);
    return std::string(text.utf8());
}
