#include "objects/face/smmodelrestore_002_000.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smguard_002_000.h"
#include "objects/face/smmodelsplice_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smreferences_002_000.h"

namespace schema_002_000 {

namespace {

using Element = SMModelOutline::Element;
constexpr std::size_t NONE = SMModelOutline::NONE;

std::string NameOf(const SMObjectBase& object) {
    std::string name = SMAddressOf(object);
    if (name.empty()) name = SMNameOf(object);
    if (name.empty()) name = "id:" + std::string(object.GetId().utf8());
    return SMKindOf(object) + " '" + name + "'";
}

SMDiagnostic Note(std::string message) {
    SMDiagnostic note;
    note.severity = SMSeverity::note;
    note.message = std::move(message);
    return note;
}

/** Works out where the object goes, and what makes room for it. */
class Planner {
  public:
    Planner(const SMModelOutline& then, const SMModelOutline& now, std::size_t place)
        : m_then(then), m_now(now), m_place(place), m_element(then.Elements()[place]) {}

    SMSplicePlan Plan() {
        m_plan.element = m_element.number;
        const std::size_t around = m_then.Around(m_place);
        if (around == NONE) {
            m_plan.before = 0;
            m_plan.without.insert(0);
            return m_plan;
        }
        m_parent = Present(around);
        if (m_parent == NONE)
            throw TklRuntimeError("what it hung below, the " + NameOf(*m_then.Elements()[around].object) +
                                  " (id:" + std::string(IdAt(m_then, around)) + "), is gone; restore that first");
        MakeRoom();
        if (m_plan.before == NONE) FindPlace(around);
        return m_plan;
    }
    const std::vector<SMDiagnostic>& Notes() const { return m_notes; }

  private:
    static std::string_view IdAt(const SMModelOutline& outline, std::size_t place) {
        return outline.Elements()[place].object->GetId().utf8();
    }
    const Element& Now(std::size_t place) const { return m_now.Elements()[place]; }
    /** The place of an object now. One of another table that has the id is another object. */
    std::size_t Present(std::size_t place) const {
        const std::size_t present = m_now.Find(IdAt(m_then, place));
        const bool same = present != NONE && Now(present).object->GetIdCol() == m_then.Elements()[place].object->GetIdCol();
        return same ? present : NONE;
    }
    /** No object goes unasked for: another one that has the id stays, so the id is not free. */
    void RequireId(std::size_t place) const {
        const std::size_t taken = m_now.Find(IdAt(m_then, place));
        if (taken == NONE || Present(place) != NONE || Goes(Now(taken).number)) return;
        throw TklRuntimeError("the id '" + std::string(IdAt(m_then, place)) + "' of the " + NameOf(*m_then.Elements()[place].object) +
                              " is that of the " + NameOf(*Now(taken).object) + " by now; give that another id, or remove it, first");
    }
    bool Goes(std::size_t number) const {
        return std::any_of(m_plan.without.begin(), m_plan.without.end(),
                           [&](std::size_t gone) { return Now(m_now.PlaceOf(gone)).Holds(number); });
    }

    /** What stands now of the object, and of all that hung below it, goes wherever it is. */
    void MakeRoom() {
        if (const std::size_t present = Present(m_place); present != NONE) {
            m_plan.without.insert(Now(present).number);
            if (m_now.Around(present) == m_parent && Names(m_now, present, m_parent) == Names(m_then, m_place, m_then.Around(m_place)))
                m_plan.before = Now(present).number;
        }
        for (std::size_t below = m_place + 1; below < m_then.Elements().size() && m_element.Holds(m_then.Elements()[below].number);
             ++below) {
            if (!m_then.Elements()[below].object) continue;
            const std::size_t present = Present(below);
            if (present == NONE || Goes(Now(present).number)) continue;
            m_plan.without.insert(Now(present).number);
            m_notes.push_back(Note("the " + NameOf(*Now(present).object) + " is taken back from where it stands now"));
        }
        for (std::size_t at = m_place; at < m_then.Elements().size() && m_element.Holds(m_then.Elements()[at].number); ++at)
            if (m_then.Elements()[at].object) RequireId(at);
        if (Goes(Now(m_parent).number))
            throw TklRuntimeError("what it hung below, the " + NameOf(*Now(m_parent).object) +
                                  ", stands inside of what is to be restored now; move that out first");
    }

    /** The elements that only group others, between an object and the one around it. */
    static std::deque<I18NString> Names(const SMModelOutline& outline, std::size_t place, std::size_t around) {
        std::deque<I18NString> names;
        for (place = outline.Elements()[place].parent; place != around; place = outline.Elements()[place].parent)
            names.push_front(outline.Elements()[place].name);
        return names;
    }

    void FindPlace(std::size_t around) {
        const std::deque<I18NString> wrappers = Names(m_then, m_place, around);
        const std::size_t group = m_element.parent;
        const std::vector<Element>& elements = m_then.Elements();
        std::vector<std::size_t> elder, younger;
        for (std::size_t at = group + 1; at < elements.size() && elements[group].Holds(elements[at].number); ++at) {
            if (elements[at].parent != group || at == m_place) continue;
            const std::size_t sibling = Sibling(at, wrappers);
            if (sibling != NONE) (at < m_place ? elder : younger).push_back(sibling);
        }
        if (!elder.empty()) {
            m_plan.behind = elder.back();
        } else if (!younger.empty()) {
            m_plan.before = younger.front();
        } else {
            m_plan.into = Now(m_parent).number;
            m_plan.wrappers = wrappers;
        }
    }

    /** The number of an object's element now if it still stands below the same parent; NONE else. */
    std::size_t Sibling(std::size_t place, const std::deque<I18NString>& wrappers) const {
        if (!m_then.Elements()[place].object) return NONE;
        const std::size_t present = Present(place);
        if (present == NONE || m_now.Around(present) != m_parent || Names(m_now, present, m_parent) != wrappers) return NONE;
        return Goes(Now(present).number) ? NONE : Now(present).number;
    }

    const SMModelOutline& m_then;
    const SMModelOutline& m_now;
    std::size_t m_place;
    const Element& m_element;
    std::size_t m_parent = NONE;
    SMSplicePlan m_plan;
    std::vector<SMDiagnostic> m_notes;
};

/** Names of namespaces are unique in a model: the second of two would get another one. */
void CheckNamespaces(const SMModelOutline& then, const SMModelOutline& now, const Element& element, const SMSplicePlan& plan) {
    const auto isNamespace = [](const Element& e) { return e.object && e.object->GetSMType() == SMEnum_xmltag::Enum::namespace_; };
    std::set<std::string> coming;
    for (const Element& inside : then.Elements())
        if (element.Holds(inside.number) && isNamespace(inside)) coming.insert(SMNameOf(*inside.object));
    if (coming.empty()) return;
    for (const Element& present : now.Elements()) {
        if (!isNamespace(present) || coming.count(SMNameOf(*present.object)) == 0) continue;
        const bool goes = std::any_of(plan.without.begin(), plan.without.end(),
                                      [&](std::size_t gone) { return now.Elements()[now.PlaceOf(gone)].Holds(present.number); });
        if (!goes)
            throw TklRuntimeError("a namespace '" + SMNameOf(*present.object) + "' stands elsewhere by now; rename or remove it first");
    }
}

using Sharing = std::map<std::size_t, const SMObjectBase*>;

/** Of the objects in an element, by their count in it, those whose name and address another object outside has too. */
Sharing SharedAddresses(const SMModelOutline& outline, const Element& around) {
    std::map<std::pair<std::string, std::string>, std::vector<std::size_t>> inside;
    const auto known = [](const SMObjectBase& object) { return std::pair(SMNameOf(object), SMAddressOf(object)); };
    std::size_t count = 0;
    for (const Element& element : outline.Elements()) {
        if (!element.object || !around.Holds(element.number)) continue;
        const auto key = known(*element.object);
        if (!key.first.empty() && !key.second.empty()) inside[key].push_back(count);
        ++count;
    }
    Sharing sharing;
    for (const Element& element : outline.Elements()) {
        if (inside.empty() || !element.object || around.Holds(element.number)) continue;
        const auto found = inside.find(known(*element.object));
        if (found == inside.end()) continue;
        for (const std::size_t at : found->second) sharing.emplace(at, element.object.get());
    }
    return sharing;
}

/** Parts of which their owner has one at most: a second one would take the place of the first. */
void CheckOnlyParts(const SMModelOutline& restored, const Element& element) {
    const SMEnum_xmltag::Enum type = element.object->GetSMType();
    if (type != SMEnum_xmltag::Enum::definition && type != SMEnum_xmltag::Enum::promptInfo) return;
    for (const Element& other : restored.Elements())
        if (other.parent == element.parent && other.number != element.number && other.object && other.object->GetSMType() == type)
            throw TklRuntimeError("another " + SMKindOf(*other.object) + " stands in its place; restore what it belongs to instead");
}

void CheckNames(const SMModelOutline& then, const Element& element, const SMModelOutline& restored, const Element& back) {
    const Sharing before = SharedAddresses(then, element);
    for (const auto& [at, other] : SharedAddresses(restored, back))
        if (before.count(at) == 0) throw TklRuntimeError("there is another " + NameOf(*other) + " by now; rename or remove it first");
    CheckOnlyParts(restored, back);
}

using Reference = std::tuple<std::string, std::string, std::string>;

Reference ReferenceOf(const SMDanglingReference& dangling) {
    return {SMAddressOf(*dangling.place.holder), dangling.place.field, dangling.text};
}

/** Notes for the references that lead nowhere in a model and did neither then nor before. */
void NoteDangling(const SMProject2& then, const SMProject2& before, const SMProject2& after, std::vector<SMDiagnostic>& notes) {
    std::set<Reference> known;
    for (const SMProject2* const model : {&then, &before})
        for (const SMDanglingReference& dangling : SMCheckReferences(*model).dangling) known.insert(ReferenceOf(dangling));
    for (const SMDanglingReference& dangling : SMCheckReferences(after).dangling) {
        const Reference reference = ReferenceOf(dangling);
        if (known.count(reference) != 0) continue;
        const auto& [holder, field, text] = reference;
        notes.push_back(Note("'" + text + "' leads nowhere now" + (holder.empty() ? "" : ", in " + holder) + ": " + field));
    }
}

void TakeIds(const SMModelOutline& then, const SMModelOutline& now, const SMModelOutline& restored, const SMSplice& splice,
             SMRestoreResult& result) {
    for (const Element& element : restored.Elements()) {
        if (!element.object) continue;
        const SMSplice::Origin origin = splice.OriginOf(element.number);
        const SMModelOutline& outline = origin.isFromSource ? then : now;
        const std::size_t place = outline.PlaceOf(origin.number);
        if (place != NONE && outline.Elements()[place].object)
            result.ids.emplace_back(element.object, outline.Elements()[place].object->GetId());
    }
}

void Restore(const SMModelOutline& then, const SMModelOutline& now, std::size_t place, const SMControl& control, SMRestoreResult& result,
             std::vector<SMDiagnostic>& notes) {
    SMQuietSink quiet;  // what reading the models logs was told when they were put
    const SMLogScope scope(quiet);
    const Element& element = then.Elements()[place];
    Planner planner(then, now, place);
    const SMSplicePlan plan = planner.Plan();
    notes = planner.Notes();
    CheckNamespaces(then, now, element, plan);
    const SMSplice splice(now.Document(), then.Document(), plan, now.Limits());
    const SMModelOutline restored(splice.Document(), control, now.Limits());
    const auto back = std::find_if(restored.Elements().begin(), restored.Elements().end(), [&](const Element& e) {
        const SMSplice::Origin origin = splice.OriginOf(e.number);
        return origin.isFromSource && origin.number == element.number;
    });
    if (back == restored.Elements().end() || !back->object) throw TklRuntimeError("its place cannot take it any more");
    CheckNames(then, element, restored, *back);
    NoteDangling(then.Project(), now.Project(), restored.Project(), notes);
    TakeIds(then, now, restored, splice, result);
    result.project = &restored.Project();
}

}  // namespace

SMRestoreResult SMRestoreObject(const SMModelOutline& then, const SMModelOutline& now, const QvULString& id, const SMControl& control) {
    SMRestoreResult result;
    std::vector<SMDiagnostic> notes;
    SMRunGuarded(result, [&] {
        const std::size_t place = then.Find(id.utf8());
        if (place == NONE) throw TklRuntimeError("no object had the id '" + std::string(id.utf8()) + "' then");
        try {
            Restore(then, now, place, control, result, notes);
        } catch (const TklRuntimeError& error) {
            throw TklRuntimeError("the " + NameOf(*then.Elements()[place].object) + " cannot be restored: " + error.message());
        }
        return true;
    });
    result.diagnostics.insert(result.diagnostics.end(), notes.begin(), notes.end());
    if (!result.IsDone()) result.project = nullptr;
    return result;
}

}  // namespace schema_002_000
