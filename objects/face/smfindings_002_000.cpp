#include "objects/face/smfindings_002_000.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <unordered_map>
#include <utility>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/text/shortened.h"
#include "core/qvutils/xml/limits.h"
#include "objects/face/smguard_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/links/smrelationship2_002_000.h"

namespace schema_002_000 {

namespace {

using Tag = SMEnum_xmltag::Enum;
using What = qv::PlaceQuestion::What;

/** How findings name an object: as references do, or else by its path. */
std::string NameOf(const SMObjectBase& object) {
    constexpr std::size_t LONGEST = 1'000;  // since each finding has its own
    const std::string address = SMAddressOf(object);
    return qv::Shortened(address.empty() ? SMDescribeObject(object).path : address, LONGEST);
}

std::string SideOf(bool isLeft) {
    return isLeft ? "left" : "right";
}

std::string TellMissing(bool isLeft, bool lacksLeast, bool lacksMost) {
    const char* const what = lacksLeast && lacksMost ? "neither mincard nor maxcard" : lacksLeast ? "no mincard" : "no maxcard";
    return "the " + SideOf(isLeft) + " end has " + what;
}

const SMObjectBase* ModelObject(const QvSmartPtr<IOObject>& held) {
    return held ? dynamic_cast<const SMObjectBase*>(&*held) : nullptr;
}

bool Lacks(SMEnum_cardinality::Enum cardinality) {
    return cardinality == SMEnum_cardinality::Enum(-1);
}

}  // namespace

SMModelFindings::SMModelFindings(SMCheckResult& result, const SMLoadOptions& options) : m_result(result), m_options(options) {
    const SMReferenceIndex index(*result.project);
    m_objects = index.GetObjects();
    FindDangling(index);
    FindHidden(index);
    FindDuplicateIds();
    FindMissingCardinalities();
    m_objects = {};
}

SMModelFindings::Finding& SMModelFindings::Add(Finding::Kind kind, std::size_t object, const char* code, std::string message) {
    const std::size_t most = m_options.limits.findings;
    if (m_findings.size() == most) {
        const std::string what = "there are more than " + std::to_string(most) + " findings";
        throw qv::LimitError(m_options.limits, &SMXMLLimits::findings, what, {});
    }
    Finding& finding = m_findings.emplace_back();
    finding.kind = kind;
    finding.number = object;
    finding.told = SMToldFinding(code, std::move(message));
    finding.told.objectPath = NameOf(*m_objects[object]);
    return finding;
}

void SMModelFindings::FindDangling(const SMReferenceIndex& index) {
    SMReferenceCheck check = SMCheckReferences(index, m_options.control);
    m_result.diagnostics.insert(m_result.diagnostics.end(), check.diagnostics.begin(), check.diagnostics.end());
    if (check.status == SMStatus::cancelled) throw SMCancelled();
    m_result.dangling = std::move(check.dangling);
    if (m_result.dangling.empty()) return;
    std::unordered_map<const SMObjectBase*, std::size_t> numbers;
    for (std::size_t i = 0; i < m_objects.size(); ++i) numbers[m_objects[i]] = i;
    for (const SMDanglingReference& reference : m_result.dangling) {
        Finding& finding = Add(Finding::reference, numbers[reference.place.holder], qv::code::DANGLING_REFERENCE,
                               "the reference " + reference.text + " in '" + reference.place.field + "' names no object of the model");
        finding.text = reference.text;
        m_texts.insert(reference.text);
    }
}

void SMModelFindings::FindHidden(const SMReferenceIndex& index) {
    for (const std::size_t number : index.GetHidden()) {
        if (SMNameOf(*m_objects[number]).empty()) continue;  // its address is that of its namespace
        Add(Finding::object, number, qv::code::DUPLICATE_OBJECT_ID,
            "an object before it has the object id too, so that references never lead here");
    }
}

void SMModelFindings::FindDuplicateIds() {
    std::vector<std::pair<std::size_t, std::size_t>> hashes;
    for (std::size_t i = 0; i < m_objects.size(); ++i) {
        const QvULString& id = m_objects[i]->GetId();
        if (!id.empty()) hashes.emplace_back(std::hash<std::string_view>()(id.utf8()), i);
    }
    std::sort(hashes.begin(), hashes.end());
    std::size_t run = 0;
    for (std::size_t i = 0; i < hashes.size(); ++i) {
        if (hashes[i].first != hashes[run].first) run = i;
        const std::size_t number = hashes[i].second;
        const QvULString& id = m_objects[number]->GetId();
        std::size_t first = run;  // nearly always has this very id; it may have another one with the same hash
        while (m_objects[hashes[first].second]->GetId() != id) ++first;
        if (first == i) continue;
        Add(Finding::object, number, qv::code::DUPLICATE_ID,
            "the id " + std::string(id.utf8()) + " is also that of " + NameOf(*m_objects[hashes[first].second]));
    }
}

void SMModelFindings::FindMissingCardinalities() {
    for (std::size_t i = 0; i < m_objects.size(); ++i) {
        const Tag kind = m_objects[i]->GetSMType();
        if (kind != Tag::relationship && kind != Tag::scopeRelationship) continue;
        const auto& relationship = static_cast<const SMRelationshipBase2&>(*m_objects[i]);
        for (const bool isLeft : {true, false}) {
            const auto& end = isLeft ? relationship.GetLeft() : relationship.GetRight();
            if (!Lacks(end.minCard) && !Lacks(end.maxCard)) continue;
            Add(Finding::end, i, qv::code::NO_CARDINALITY, TellMissing(isLeft, Lacks(end.minCard), Lacks(end.maxCard))).isLeft = isLeft;
        }
    }
}

/** The places of findings in what a second read noted. */
class SMModelFindings::Placing {
  public:
    Placing(const SMProject2& again, SMFindingPlaces& places, const SMReadWitness& witness) : m_places(places), m_witness(witness) {
        SMForEachObject(again, [&](const SMObjectBase& object, int) { m_objects.push_back(&object); });
        for (const SMFindingPlaces::Reference& reference : places.References())
            if (const SMObjectBase* const object = ModelObject(reference.object))
                m_references[{SMPlaceOfReference(*object, {}).holder, reference.text}].push_back(&reference);
        for (auto& [key, found] : m_references) std::reverse(found.begin(), found.end());
        for (const SMFindingPlaces::RelationshipEnd& end : places.Ends()) m_ends[{end.relationship, end.isLeft}] = &end;
    }

    void Add(const Finding& finding) {
        switch (finding.kind) {
        case Finding::reference: return AddReference(finding);
        case Finding::object: return AddAt(finding.told, ObjectOf(finding));
        case Finding::end: return AddEnd(finding);
        }
    }

    void AddMisread(const SMFindingPlaces::Misread& misread) {
        const SMObjectBase* const object = ModelObject(misread.object);
        SMDiagnostic told = SMToldMisread(misread);
        if (object) told.objectPath = NameOf(*object);
        const bool isInside = misread.isText;
        Put(std::move(told), isInside ? misread.inside : misread.element, isInside ? What::text : What::element);
    }

    std::vector<Placed> Take() { return std::move(m_placed); }

    const SMObjectBase* ObjectOf(const Finding& finding) const {
        return finding.number < m_objects.size() ? m_objects[finding.number] : nullptr;
    }

  private:
    void Put(SMDiagnostic told, const qv::ContentPlace& place, What what, const std::string& name = {}) {
        m_placed.push_back({std::move(told), {m_witness.File(place.file), {what, place.line, place.column, name}}});
    }

    void AddAt(const SMDiagnostic& told, const IOObject* object) {
        const qv::ContentPlace* const place = m_places.PlaceOf(object);
        if (place) return Put(told, *place, What::element);
        m_placed.push_back({told, {}});
    }

    void AddReference(const Finding& finding) {
        const auto found = m_references.find({ObjectOf(finding), finding.text});
        if (found == m_references.end() || found->second.empty()) return AddAt(finding.told, ObjectOf(finding));
        const SMFindingPlaces::Reference& reference = *found->second.back();
        found->second.pop_back();
        Put(finding.told, reference.place, reference.attribute.empty() ? What::text : What::attribute, reference.attribute);
    }

    /** What stands there and is no cardinality is lost, and told so. */
    void AddEnd(const Finding& finding) {
        const auto found = m_ends.find({ObjectOf(finding), finding.isLeft});
        SMDiagnostic told = finding.told;
        if (found == m_ends.end()) {
            told.message = "there is no " + SideOf(finding.isLeft) + " end, and so no mincard and maxcard of it";
            return AddAt(told, ObjectOf(finding));
        }
        const SMFindingPlaces::RelationshipEnd& end = *found->second;
        if (end.hasLeast && end.hasMost) return;
        told.message = TellMissing(end.isLeft, !end.hasLeast, !end.hasMost);
        Put(std::move(told), end.place, What::element);
    }

    SMFindingPlaces& m_places;
    const SMReadWitness& m_witness;
    std::vector<const SMObjectBase*> m_objects;
    /** By holder and text, the last one first. */
    std::map<std::pair<const SMObjectBase*, std::string>, std::vector<const SMFindingPlaces::Reference*>> m_references;
    std::map<std::pair<const IOObject*, bool>, const SMFindingPlaces::RelationshipEnd*> m_ends;
    std::vector<Placed> m_placed;
};

std::vector<SMModelFindings::Placed> SMModelFindings::Place(SMFindingPlaces& places, const SMReadWitness& witness) {
    Placing placing(*m_result.project, places, witness);
    for (std::size_t i = 0; i < m_result.dangling.size(); ++i) m_result.dangling[i].place.holder = placing.ObjectOf(m_findings[i]);
    for (const Finding& finding : m_findings) placing.Add(finding);
    for (const SMFindingPlaces::Misread& misread : places.Misreads())
        if (!misread.isLost) placing.AddMisread(misread);
    return placing.Take();
}

}  // namespace schema_002_000
