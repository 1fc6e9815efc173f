#include "objects/face/smmodelwalk_002_000.h"

#include <algorithm>
#include <unordered_set>
#include <utility>
#include <vector>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smguard_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "objects/query/smdeterminant2_002_000.h"

namespace schema_002_000 {

namespace {

using Place = std::size_t;
constexpr Place NONE = static_cast<Place>(-1);

/** The registry of the project as a tree: for each object its first child and its next sibling. */
class Tree {
  public:
    explicit Tree(const SMProject2& project) {
        const auto& objects = project.GetAllObjects().GetObjects();
        std::unordered_set<const SMObjectBase*> namespaces{project.GetRootNamespace()};
        for (const SMObjectBase* object : objects)
            if (object && IsSection(*object))
                for (const auto& below : static_cast<const SMSectionType2*>(object)->GetNamespaces()) namespaces.insert(below.get());
        Enter(project);
        for (const SMObjectBase* object : objects)
            if (object && (!IsNamespace(*object) || namespaces.count(object) > 0)) Enter(*object);
        std::sort(m_places.begin(), m_places.end());
        for (Place place = 1; place < m_nodes.size(); ++place) LinkToParent(place);
        m_places = {};
    }

    void Walk(const std::function<void(const SMObjectBase&, int)>& visit) const {
        std::vector<Place> open{0};  // the next object of each level
        while (!open.empty()) {
            const Place place = open.back();
            if (place == NONE) {
                open.pop_back();
                continue;
            }
            const Node& node = m_nodes[place];
            visit(*node.object, static_cast<int>(open.size()) - 1);
            open.back() = node.next;
            open.push_back(node.first);
        }
    }

  private:
    struct Node {
        const SMObjectBase* object;
        Place first = NONE, last = NONE, next = NONE;
    };

    /**
     * What is around a namespace may not have it, so that no document does: a root that was replaced, whom the project keeps alive, or what
     * was read of a broken file, while somebody holds it.
     */
    static bool IsNamespace(const SMObjectBase& object) { return object.GetSMType() == SMEnum_xmltag::Enum::namespace_; }
    static bool IsSection(const SMObjectBase& object) { return IsNamespace(object) || object.GetSMType() == SMEnum_xmltag::Enum::folder; }

    void Enter(const SMObjectBase& object) {
        m_places.emplace_back(&object, m_nodes.size());
        m_nodes.push_back({&object});
    }

    /** An object whose parent is not here stands alone, and is not reached. */
    void LinkToParent(Place place) {
        const IOObject* const object = m_nodes[place].object->parent;
        const auto found = std::lower_bound(m_places.begin(), m_places.end(), std::pair(object, Place{0}));
        if (!object || found == m_places.end() || found->first != object) return;
        Node& parent = m_nodes[found->second];
        (parent.first == NONE ? parent.first : m_nodes[parent.last].next) = place;
        parent.last = place;
    }

    std::vector<Node> m_nodes;
    /** By address, to find a parent's node; for the time of building only. */
    std::vector<std::pair<const IOObject*, Place>> m_places;
};

std::string Text(const I18NString& text) {
    return std::string(text.utf8());
}

I18NString PathOf(const SMObjectBase& object) {
    I18NString path;
    try {
        object.GetSMPath(path);
        if (!path.empty()) return path;
    } catch (const TklAssertError&) {
        // its ancestors run out: what stands beside the namespaces has no such path, nor has the root
    }
    object.getPath(path);
    return path;
}

}  // namespace

void SMForEachObject(const SMProject2& project, const std::function<void(const SMObjectBase&, int)>& visit) {
    Tree(project).Walk(visit);
}

std::string SMKindOf(const SMObjectBase& object) {
    return Text(SMEnum_xmltag::GetInstance()->_enum2string(object.GetSMType()));
}

std::string SMNameOf(const SMObjectBase& object) {
    switch (object.GetSMType()) {
    case SMEnum_xmltag::Enum::project: return Text(static_cast<const SMProject2&>(object).GetName());
    case SMEnum_xmltag::Enum::parameterMap: return Text(static_cast<const SMParameterMap2&>(object).GetName());
    case SMEnum_xmltag::Enum::parameterMapEntry: return Text(static_cast<const SMParameterMapEntry2&>(object).GetKey());
    case SMEnum_xmltag::Enum::determinant: return Text(static_cast<const SMDeterminant2&>(object).GetName());
    default: return Text(object.GetNameForSMPath());
    }
}

SMObjectLine SMDescribeObject(const SMObjectBase& object) {
    SMQuietSink quiet;
    const SMLogScope scope(quiet);
    return {SMKindOf(object), Text(object.GetSMID(false)), Text(PathOf(object)), Text(object.GetId())};
}

}  // namespace schema_002_000
