#pragma once

#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/qvutils/content/contentdiff.h"
#include "core/qvutils/content/contentsink.h"
#include "core/qvutils/diag/valuewitness.h"
#include "objects/face/smreadwitness_002_000.h"

namespace schema_002_000 {

/** Notes, while a document is read a second time, where that stands which findings are about. Places are those of the parser. */
class SMFindingPlaces final : public qv::ContentSink, public qv::ValueWitness {
  public:
    /** Both are borrowed. `texts` are the references to look for. */
    SMFindingPlaces(SMReadWitness& witness, const std::unordered_set<std::string>& texts) : m_witness(witness), m_texts(texts) {}

    void Start(std::string_view name) override;
    void Attribute(std::string_view name, std::string_view value) override;
    void Forget(std::string_view, std::string_view) override {}
    void Text(std::string_view text) override;
    void End() override;
    void StartPart() override;
    void EndPart(bool isWhole) override;
    void Become(std::string_view) override {}
    void Tell(What what, std::string_view text, std::string_view taken) override;

    /** One of the texts where a reference may stand: in an attribute, or else in an element without others in it. */
    struct Reference {
        QvSmartPtr<IOObject> object;
        std::string text, attribute;
        qv::ContentPlace place;
    };
    /** An end of a relationship. */
    struct RelationshipEnd {
        const IOObject* relationship;
        bool isLeft, hasLeast, hasMost;
        qv::ContentPlace place;
    };
    struct Misread {
        What what;
        /** And the word that it is taken for, if there is one. */
        std::string text, taken;
        QvSmartPtr<IOObject> object;
        /** Of the element that has it as its text, or as an attribute; and of the text. */
        qv::ContentPlace element, inside;
        bool isText;
        /** A loss tells of it. */
        bool isLost = false;
    };

    std::vector<Reference>& References() { return m_references; }
    const std::vector<RelationshipEnd>& Ends() const { return m_ends; }
    const std::vector<Misread>& Misreads() const { return m_misreads; }
    /** The start tag of an object that is still there; null when it has none. */
    const qv::ContentPlace* PlaceOf(const IOObject* object) const;
    /** Whether its name, its text or one of its attributes was misread. */
    bool IsMisread(const qv::ContentNode& element) const { return !MisreadsAt(element).empty(); }
    /** What was misread so that content is lost; null when nothing was. From now on, a loss tells of all that was misread there. */
    const Misread* ReasonOf(const qv::ContentLoss& loss);

  private:
    struct Level {
        std::string name;
        /** What was filled before the element began. */
        const IOObject* around = nullptr;
        qv::ContentPlace place, inside;
        std::string text;
        bool hasChildren = false, hasText = false, isPlaceholder = false;
        bool hasLeast = false, hasMost = false;
    };

    void NoteObject(const Level& level, const IOObject* object);
    void NoteEnd(const Level& level, const IOObject* object);
    const std::vector<std::size_t>& MisreadsAt(const qv::ContentNode& element) const;
    void LoseAll(const qv::ContentNode& element);

    SMReadWitness& m_witness;
    const std::unordered_set<std::string>& m_texts;
    std::vector<Level> m_open;
    Level m_ended;
    bool m_isEnding = false, m_atRootOfPart = false;
    std::vector<std::size_t> m_parts;
    std::unordered_map<const IOObject*, qv::ContentPlace> m_objects;
    std::vector<Reference> m_references;
    std::vector<RelationshipEnd> m_ends;
    std::vector<Misread> m_misreads;
    /** By the places of their elements. */
    std::map<std::tuple<std::size_t, long, long>, std::vector<std::size_t>> m_misreadsAt;
};

/** A finding with the severity of its code. */
SMDiagnostic SMToldFinding(const char* code, std::string message);
/** The finding that a text was misread, without its object and place. */
SMDiagnostic SMToldMisread(const SMFindingPlaces::Misread& misread);

}  // namespace schema_002_000
