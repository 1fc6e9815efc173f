// Addresses, the index of them, and the check that goes over all references.
#include <algorithm>
#include <functional>

#include "core/qvutils/text/asciifold.h"
#include "objects/face/smguard_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smreferences_002_000.h"

namespace schema_002_000 {

namespace {

using Tag = SMEnum_xmltag::Enum;

constexpr std::size_t OBJECTS_PER_TICK = 4'096;
constexpr std::size_t FEWEST_SLOTS = 16;
/** Texts that differ in more than a third of their letters are not alike, but for short ones. */
constexpr std::size_t LIKENESS = 3;

std::string InSection(const char* section, const SMObjectBase& object) {
    const std::string name = SMNameOf(object);
    return name.empty() ? std::string() : "[].[" + std::string(section) + "].[" + name + "]";
}

/** The same without care for the log, in which ids that cannot be told are noted. */
std::string Address(const SMObjectBase& object) {
    const I18NString id = object.GetSMID(false);
    if (!id.empty()) return std::string(id.utf8());
    switch (object.GetSMType()) {
    case Tag::dataSource: return InSection("dataSources", object);
    case Tag::parameterMap: return InSection("parameterMaps", object);
    case Tag::package: return InSection("packages", object);
    case Tag::filter:
    case Tag::function:
    case Tag::queryItem: break;
    default: return std::string();
    }
    const SMObjectBase* container = object.GetParentSMObj();
    while (container && container->IsFolder()) container = container->GetParentSMObj();
    const std::string name = SMNameOf(object), outer = container && !name.empty() ? Address(*container) : std::string();
    return outer.empty() ? std::string() : outer + ".[" + name + "]";
}

/** Letters to insert, delete or replace, up to `limit`; beyond it, one more. Small and capital letters count as the same. */
std::size_t EditDistance(std::string_view a, std::string_view b, std::size_t limit) {
    if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > limit) return limit + 1;
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t i = 0; i <= b.size(); ++i) row[i] = i;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0], least = row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (qv::AsciiLower(a[i - 1]) == qv::AsciiLower(b[j - 1]) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
            least = std::min(least, row[j]);
        }
        if (least > limit) return limit + 1;
    }
    return std::min(row.back(), limit + 1);
}

/** What the last pair of brackets holds; the whole text when there is none. */
std::string_view LastPart(std::string_view address) {
    const std::size_t open = address.rfind('[');
    if (open == std::string_view::npos) return address;
    address.remove_prefix(open + 1);
    return address.ends_with(']') ? address.substr(0, address.size() - 1) : address;
}

}  // namespace

std::string SMAddressOf(const SMObjectBase& object) {
    SMQuietSink quiet;
    const SMLogScope scope(quiet);
    return Address(object);
}

SMReferenceIndex::SMReferenceIndex(const SMProject2& project) {
    SMQuietSink quiet;
    const SMLogScope scope(quiet);
    SMForEachObject(project, [&](const SMObjectBase& object, int) { m_objects.push_back(&object); });
    std::size_t slots = FEWEST_SLOTS;
    while (slots < 2 * m_objects.size()) slots *= 2;
    m_slots.resize(slots);
    for (std::size_t i = 0; i < m_objects.size(); ++i) {
        const std::string address = Address(*m_objects[i]);
        if (address.empty()) continue;
        Slot& slot = m_slots[SlotOf(address)];
        if (slot.object)
            m_hidden.push_back(i);
        else
            slot = {std::hash<std::string_view>()(address), m_objects[i]};
    }
}

std::size_t SMReferenceIndex::SlotOf(std::string_view address) const {
    const std::size_t hash = std::hash<std::string_view>()(address), mask = m_slots.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        const Slot& slot = m_slots[place];
        if (!slot.object || (slot.hash == hash && Address(*slot.object) == address)) return place;
    }
}

const SMObjectBase* SMReferenceIndex::Find(std::string_view address) const {
    SMQuietSink quiet;
    const SMLogScope scope(quiet);
    return m_slots[SlotOf(address)].object;
}

std::vector<std::string> SMReferenceIndex::FindAlike(std::string_view text, std::size_t count) const {
    SMQuietSink quiet;
    const SMLogScope scope(quiet);
    const std::size_t limit = std::max(LIKENESS, text.size() / LIKENESS);
    std::vector<std::pair<std::size_t, std::string>> found;
    for (const Slot& slot : m_slots) {
        if (!slot.object) continue;
        std::string address = Address(*slot.object);
        const std::size_t distance = EditDistance(address, text, limit);
        if (distance <= limit || qv::AsciiEqualsIgnoreCase(LastPart(address), LastPart(text)))
            found.emplace_back(distance, std::move(address));
    }
    const std::size_t kept = std::min(count, found.size());
    std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(kept), found.end());
    std::vector<std::string> addresses;
    for (std::size_t i = 0; i < kept; ++i) addresses.push_back(std::move(found[i].second));
    return addresses;
}

namespace {

void LookUpAll(const SMReferenceIndex& index, const SMControl& control, SMReferenceCheck& check) {
    SMTicker ticker(control, SMProgress::objects, OBJECTS_PER_TICK);
    for (const SMObjectBase* object : index.GetObjects()) {
        ticker.Add(1);
        SMForEachReference(*object, [&](std::string_view field, std::string_view text) {
            ++check.references;
            if (!index.Find(text)) check.dangling.push_back({SMPlaceOfReference(*object, field), std::string(text)});
        });
    }
}

}  // namespace

SMReferenceCheck SMCheckReferences(const SMProject2& project, const SMControl& control) {
    SMReferenceCheck check;
    SMRunGuarded(check, [&] {
        LookUpAll(SMReferenceIndex(project), control, check);
        return true;
    });
    return check;
}

SMReferenceCheck SMCheckReferences(const SMReferenceIndex& index, const SMControl& control) {
    SMReferenceCheck check;
    SMRunGuarded(check, [&] {
        LookUpAll(index, control, check);
        return true;
    });
    return check;
}

}  // namespace schema_002_000
