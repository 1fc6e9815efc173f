#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

namespace bench {

/** A model document of namespaces, folders and parameter maps of about `bytes` bytes, the same for the same size. */
class FrameDocument {
  public:
    static std::string Make(std::size_t bytes) {
        FrameDocument document;
        document.Frame();
        std::string maps;
        for (unsigned i = 0; document.m_out.size() + maps.size() < bytes; ++i) {
            document.Namespace(i);
            document.Map(maps, i);
        }
        document.m_out += "</namespace><dataSources></dataSources><parameterMaps>" + maps +
                          "</parameterMaps><securityViews></securityViews><packages></packages></project>";
        return std::move(document.m_out);
    }

  private:
    std::string Id() {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        char text[40];
        std::snprintf(text, sizeof text, "%08x-%04x-5%03x-a%03x-%012llx", static_cast<unsigned>(m_state >> 32),
                      static_cast<unsigned>(m_state >> 16) & 0xFFFF, static_cast<unsigned>(m_state >> 4) & 0xFFF,
                      static_cast<unsigned>(m_state) & 0xFFF, static_cast<unsigned long long>(m_state >> 16));
        return text;
    }
    void Frame() {
        m_out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<project id=\"" + Id() +
                "\" xmlns=\"http://schemas.example.org/schemas/krt/60/0\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                "xsi:schemaLocation=\"http://schemas.example.org/schemas/krt/60/0 KRTModelSpecification.xsd\"><name>frame</name>"
                "<locales><locale>en</locale><locale>fr</locale></locales><defaultLocale>en</defaultLocale><namespace>";
        Head("Model");
    }
    void Head(const std::string& name) {
        m_out += "<name locale=\"fr\">" + name +
                 " en fran\xC3\xA7"
                 "ais</name><name locale=\"en\">" +
                 name + "</name><description locale=\"en\">What the business calls " + name +
                 "</description><lastChanged>2007-01-08T10:01:02</lastChanged><property name=\"qvref\" type=\"hidden\">" + Id() +
                 "</property><property name=\"id\" type=\"hidden\">" + Id() +
                 "</property><property name=\"version\" type=\"hidden\">3</property>";
    }
    void Namespace(unsigned i) {
        m_out += "<namespace>";
        Head("Layer " + std::to_string(i));
        for (unsigned j = 0; j < 20; ++j) {
            m_out += "<folder>";
            Head("Folder " + std::to_string(i) + " " + std::to_string(j));
            m_out += "</folder>";
        }
        m_out += "</namespace>";
    }
    void Map(std::string& out, unsigned i) {
        out += "<parameterMap hidden=\"false\"><name>map " + std::to_string(i) + "</name><property name=\"id\" type=\"hidden\">" + Id() +
               "</property><property name=\"version\" type=\"hidden\">1</property><defaultValue>none</defaultValue>";
        for (unsigned j = 0; j < 20; ++j)
            out += "<parameterMapEntry id=\"" + Id() + "\" version=\"1\"><key>key " + std::to_string(j) + "</key><value>[Layer " +
                   std::to_string(i) + "].[subject].[item " + std::to_string(j) + "]</value></parameterMapEntry>";
        out += "</parameterMap>";
    }

    std::string m_out;
    std::uint64_t m_state = 5;
};

}  // namespace bench
