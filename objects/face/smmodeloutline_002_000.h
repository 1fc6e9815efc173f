#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/qvutils/xml/limits.h"
#include "objects/face/smoperation_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

/** A model together with the places of its objects in its document. Elements are known by their number in the order of start tags. */
class SM_API SMModelOutline {
  public:
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

    /** An element that is an object's own, or that has such ones inside. */
    struct Element {
        std::size_t number = 0;
        /** The number behind that of the last element inside. */
        std::size_t end = 0;
        /** Place of the element around it; NONE for the root. */
        std::size_t parent = NONE;
        I18NString name;
        /** Null for an element that only groups others. Shared, for a second part of which the model keeps one takes the place of the
         * first. */
        QvSmartPtr<SMObjectBase> object;

        bool Holds(std::size_t other) const { return other >= number && other < end; }
    };

    /** Reads a model document, which is not copied. Raises TklRuntimeError when it is none, or passes a limit, and SMCancelled. */
    explicit SMModelOutline(std::string_view document, const SMControl& control = {}, const SMXMLLimits& limits = {});

    std::string_view Document() const { return m_document; }
    /** Those that it was read with. */
    const SMXMLLimits& Limits() const { return m_limits; }
    SMProject2& Project() const { return *m_project; }
    /** By number. */
    const std::vector<Element>& Elements() const { return m_elements; }
    /** The place of an element; NONE when it is not kept. */
    std::size_t PlaceOf(std::size_t number) const;

    /** Takes the ids that the objects have by now, for `Find`. */
    void IndexIds();
    /** The place of the object with the id; NONE when there is none. */
    std::size_t Find(std::string_view id) const;
    /** The place of the nearest object around an element that has an id; NONE for the outermost one. */
    std::size_t Around(std::size_t place) const;

  private:
    std::string_view m_document;
    SMXMLLimits m_limits;
    QvSmartPtr<SMProject2> m_project;
    std::vector<Element> m_elements;
    std::unordered_map<std::string_view, std::size_t> m_byId;
};

}  // namespace schema_002_000
