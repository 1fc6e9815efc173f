#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/xml/qvcontenthandler.h"

/** Writes each event of a parse down as one line; `onStart` and `onText` run after that. */
class EventLog : public QvContentHandler {
  public:
    void characters(const I18NString& text) override {
        lines.push_back("text:" + std::string(text.utf8()));
        if (onText) onText(text);
    }
    void endDocument() override { lines.push_back("end document"); }
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override {
        lines.push_back("end " + Names(uri, localName, qName));
    }
    void ignorableWhitespace(const I18NString&) override { lines.push_back("ignorable"); }
    void processingInstruction(const I18NString& target, const I18NString& data) override {
        lines.push_back("pi " + std::string(target.utf8()) + "|" + std::string(data.utf8()));
    }
    void startDocument() override { lines.push_back("start document"); }
    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        std::string line = "start " + Names(uri, localName, qName);
        for (int i = 0; i < attrs.getLength(); ++i)
            line += " " + std::string(attrs.getQName(i).utf8()) + "=" + std::string(attrs.getValue(i).utf8());
        lines.push_back(line);
        if (onStart) onStart(qName, attrs);
    }
    void startPrefixMapping(const I18NString&, const I18NString&) override { lines.push_back("prefix"); }
    void endPrefixMapping(const I18NString&) override { lines.push_back("end prefix"); }
    void skippedEntity(const I18NString& name) override { lines.push_back("skipped " + std::string(name.utf8())); }

    std::vector<std::string> lines;
    std::function<void(const I18NString&, const QvXMLAttributes&)> onStart;
    std::function<void(const I18NString&)> onText;

  private:
    static std::string Names(const I18NString& uri, const I18NString& localName, const I18NString& qName) {
        const std::string name(qName.utf8());
        return (uri.empty() ? "" : std::string(uri.utf8()) + " ") +
               (localName == qName ? name : name + "(" + std::string(localName.utf8()) + ")");
    }
};
