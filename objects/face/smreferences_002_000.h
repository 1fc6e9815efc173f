#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "objects/face/smoperation_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

/**
 * The text by which others refer to an object: its object id, and for the kinds without one the form that references to them have:
 * "[].[dataSources].[name]" and likewise for parameter maps and packages, "[namespace].[name]" for filters and functions, and for an
 * item directly in a dimension or a hierarchy the text that names that and the item. Empty when nothing can refer to the object.
 */
SM_API std::string SMAddressOf(const SMObjectBase& object);

/** Where a reference stands, as people know it: in an object that has an address, at a path of elements below it. */
struct SM_API SMReferencePlace {
    /** Borrowed. The project for what stands in no object with an address. */
    const SMObjectBase* holder = nullptr;
    std::string field;
};

/** `field` is a field of `object`, which may be a part of the holder, such as its prompt or its query. */
SM_API SMReferencePlace SMPlaceOfReference(const SMObjectBase& object, std::string_view field);

/**
 * Visits the references in an object, not those in the objects below it: the texts by which it names others, and the elements of
 * its kept XML that do so. An empty text refers to nothing, and is left out. Kept XML that is no XML is logged, and visited no further.
 */
SM_API void SMForEachReference(const SMObjectBase& object, const std::function<void(std::string_view field, std::string_view text)>& visit);

/**
 * The objects of a model by their addresses; of several with one address the first in the order of SMForEachObject. It borrows the
 * objects, changes nothing, and is good until the model changes.
 */
class SM_API SMReferenceIndex {
  public:
    explicit SMReferenceIndex(const SMProject2& project);

    /** Null when no object has the address. */
    const SMObjectBase* Find(std::string_view address) const;
    /** Addresses that look like a text, the likest first; made for a text that was mistyped. Looks at each object. */
    std::vector<std::string> FindAlike(std::string_view text, std::size_t count) const;
    /** The project and all below it, in the order of SMForEachObject. */
    const std::vector<const SMObjectBase*>& GetObjects() const { return m_objects; }
    /** Those whose address an object before them has, as places among the objects. */
    const std::vector<std::size_t>& GetHidden() const { return m_hidden; }

  private:
    struct Slot {
        std::size_t hash = 0;
        const SMObjectBase* object = nullptr;
    };
    /** The slot of an address, or the empty one where it belongs. */
    std::size_t SlotOf(std::string_view address) const;

    std::vector<const SMObjectBase*> m_objects;
    std::vector<std::size_t> m_hidden;
    /** A power of two of them, at most half in use. */
    std::vector<Slot> m_slots;
};

struct SM_API SMDanglingReference {
    /** Its holder is borrowed from the model. */
    SMReferencePlace place;
    std::string text;
};

struct SM_API SMReferenceCheck : SMResult {
    /** References looked up. */
    std::size_t references = 0;
    /** Those that no object answers to, in the order of SMForEachObject. */
    std::vector<SMDanglingReference> dangling;
};

/**
 * Looks up every reference of a model. What dangles is no diagnostic: a model may well wait for a part of it. Diagnostics tell of kept XML
 * that cannot be read.
 */
SM_API SMReferenceCheck SMCheckReferences(const SMProject2& project, const SMControl& control = {});
/** The same with the index of the model. */
SM_API SMReferenceCheck SMCheckReferences(const SMReferenceIndex& index, const SMControl& control = {});

}  // namespace schema_002_000
