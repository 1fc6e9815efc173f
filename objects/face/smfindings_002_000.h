#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "objects/face/smfindingplaces_002_000.h"
#include "objects/face/smmodelcheck_002_000.h"
#include "objects/face/smreading_002_000.h"

namespace schema_002_000 {

/** What is not consistent in a model that was read. A first look finds it; its places come from a second read, if there is any. */
class SMModelFindings {
  public:
    /** Both are borrowed. `result` gets the references that dangle. More findings than the limit of `options` raise its error. */
    SMModelFindings(SMCheckResult& result, const SMLoadOptions& options);

    bool AreNone() const { return m_findings.empty(); }
    /** The references to look for in the second read. */
    const std::unordered_set<std::string>& Texts() const { return m_texts; }

    /** A finding without its exact place yet. */
    struct Placed {
        SMDiagnostic finding;
        SMReading::Question question;
    };
    /**
     * When the result has the model of the second read, which `places` has watched: references that dangle are then held by its objects.
     * Values that were misread, and no loss tells of, come along.
     */
    std::vector<Placed> Place(SMFindingPlaces& places, const SMReadWitness& witness);

  private:
    struct Finding {
        enum Kind { reference, object, end };
        Kind kind;
        /** By its number in the order of SMForEachObject. */
        std::size_t number;
        SMDiagnostic told;
        /** The reference. */
        std::string text;
        bool isLeft = false;
    };

    void FindDangling(const SMReferenceIndex& index);
    void FindHidden(const SMReferenceIndex& index);
    void FindDuplicateIds();
    void FindMissingCardinalities();
    Finding& Add(Finding::Kind kind, std::size_t object, const char* code, std::string message);
    class Placing;

    SMCheckResult& m_result;
    const SMLoadOptions& m_options;
    /** For the time of the first look. */
    std::vector<const SMObjectBase*> m_objects;
    /** First the references that dangle, in the order of the result. */
    std::vector<Finding> m_findings;
    std::unordered_set<std::string> m_texts;
};

}  // namespace schema_002_000
