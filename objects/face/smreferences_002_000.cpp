// What objects refer to, and where.
#include "objects/face/smreferences_002_000.h"

#include "core/qvutils/diag/tklerrors.h"
#include "objects/base/smlog_002_000.h"
#include "objects/dimensional/smlevel2_002_000.h"
#include "objects/dimensional/smmeasure2_002_000.h"
#include "objects/face/smkeptreferences_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/links/smrelationship2_002_000.h"
#include "objects/links/smrelationshipshortcut2_002_000.h"
#include "objects/links/smscope2_002_000.h"
#include "objects/links/smshortcut2_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/publication/smfunction2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"
#include "objects/query/smcalculation2_002_000.h"
#include "objects/query/smdefinitionquery_002_000.h"
#include "objects/query/smdeterminant2_002_000.h"
#include "objects/query/smfilter2_002_000.h"
#include "objects/query/smpromptinfo2_002_000.h"
#include "objects/query/smquerysubjecttype2_002_000.h"

namespace schema_002_000 {

namespace {

using Tag = SMEnum_xmltag::Enum;

const SMLogWords WORDS = {"smreferences", "SMForEachReference"};

/** Hands on the references of one object, a method for each class that has some. */
class ReferenceReader {
  public:
    using Visit = std::function<void(std::string_view, std::string_view)>;

    ReferenceReader(const SMObjectBase& object, const Visit& visit) : m_object(object), m_visit(visit) {}

    void Read() {
        switch (m_object.GetSMType()) {
        case Tag::querySubject:
        case Tag::updateSubject:
        case Tag::dimension: return Subject(As<SMQuerySubjectType2>());
        case Tag::definition: return Definition(As<SMDefinition2>());
        case Tag::dbQuery: return DBQuery(As<SMDefinition2::DBQuery>());
        case Tag::modelQuery: return Kept("sql", As<SMDefinition2::ModelQuery>().sql, SMKeptNames::tablesToo);
        case Tag::filterDefinition: return Filter("", As<SMDefinition2::FilterDefinition>());
        case Tag::determinant: return Determinant(As<SMDeterminant2>());
        case Tag::queryItem: return Item(As<SMQueryItemType2>());
        case Tag::measure: return Measure(As<SMMeasure2>());
        case Tag::promptInfo: return Prompt(As<SMPromptInfo2>());
        case Tag::calculation: return Calculation(As<SMCalculation2>());
        case Tag::filter: return Kept("expression", As<SMFilter2>().GetExpression());
        case Tag::level: return Kept("memberSort", As<SMLevel2>().m_memberSort);
        case Tag::relationship: return Relationship(As<SMRelationship2>());
        case Tag::scopeRelationship: return Ends(As<SMRelationshipBase2>());
        case Tag::scope: return Text("levelRef", As<SMScope2>().m_levelRef);
        case Tag::measureScope: return MeasureScope(As<SMMeasureScope2>());
        case Tag::shortcut: return Text("refobj", As<SMShortcut2>().GetRefObj());
        case Tag::relationshipShortcut: return RelationshipShortcut(As<SMRelationshipShortcut2>());
        case Tag::dataSource: return DataSource(As<SMDatasource2>());
        case Tag::function: return Text("dataSourceRef", As<SMFunction2>().GetDataSourceRef());
        case Tag::parameterMap: return ParameterMap(As<SMParameterMap2>());
        case Tag::securityView: return SecurityView(As<SMSecurityView2>());
        case Tag::package: return Package(As<SMPackage2>());
        default: return;
        }
    }

  private:
    template <class T>
    const T& As() const {
        return static_cast<const T&>(m_object);
    }

    template <class AnyText>
    void Text(std::string_view field, const AnyText& text) {
        if (!text.empty()) m_visit(field, text.utf8());
    }
    template <class Texts>
    void Each(std::string_view field, const Texts& texts) {
        for (const auto& text : texts) Text(field, text);
    }
    void Kept(std::string_view field, const SMXMLObject2* kept, SMKeptNames names = SMKeptNames::references) {
        if (!kept || kept->buffer.view().empty()) return;
        try {
            SMForEachKeptReference(kept->buffer.view(), names, [&](std::string_view text) { m_visit(field, text); });
        } catch (const TklRuntimeError& error) {
            const SMReferencePlace place = SMPlaceOfReference(m_object, field);
            const std::string what =
                "The kept XML in '" + place.field + "' of " + SMDescribeObject(*place.holder).path + " cannot be read.";
            SMLog(SM_MISUSE, WORDS, "SMForEachReference", I18NString(std::string_view(what)),
                  I18NString(std::string_view(error.message())));
        }
    }

    template <class Record>
    void Filter(const std::string& path, const Record& filter) {
        Text(path + "refobj", filter.refobj);
        Kept(path + "expression", filter.expression);
    }
    template <class Previews, class Securities>
    void Filters(const Previews& previews, const Securities& securities) {
        for (const auto& filter : previews) Filter("previewFilter/", filter);
        for (const auto& filter : securities) Filter("securityFilterDefinition/", filter);
    }

    void Subject(const SMQuerySubjectType2& subject) {
        Filters(subject.GetFilters().Previews(), subject.GetFilters().Securities());
        Kept("hierarchies", subject.hierarchiesXml);
        Kept("levels", subject.levelsXml);
    }
    void Definition(const SMDefinition2& definition) {
        Kept("mdQuery", definition.mdQuery);
        Kept("storedProcedure", definition.storedProcedure);
        Kept("queryOperation", definition.queryOperation);
    }
    void DBQuery(const SMDefinition2::DBQuery& query) {
        Each("dataSourceRef", query.dataSourceRefs);
        Kept("sql", query.sql);
    }
    void Determinant(const SMDeterminant2& determinant) {
        Each("key", determinant.GetKeyRefObjs());
        Each("attributes", determinant.GetAttrRefObjs());
    }
    void Item(const SMQueryItemType2& item) {
        Kept("expression", item.GetExpression());
        Text("sortOnRef", item.GetSortOnRef());
    }
    void Measure(const SMMeasure2& measure) {
        Item(measure);
        Kept("aggregateRules", measure.m_aggregateRules);
    }
    void Prompt(const SMPromptInfo2& prompt) {
        Text("promptCascadeOnRef", prompt.GetPromptCascadeOnRef());
        Text("promptDisplayItemRef", prompt.GetPromptDisplayItemRef());
        Text("promptFilterItemRef", prompt.GetPromptFilterItemRef());
        Text("promptUseItemRef", prompt.GetPromptUseItemRef());
    }
    void Calculation(const SMCalculation2& calculation) {
        Item(calculation);
        Filters(calculation.GetPreviewFilters(), calculation.GetSecurityFilters());
        Each("hierarchies", calculation.GetHierarchyRefs());
        Each("dimensions", calculation.GetDimensionRefs());
        Each("dataSourceRef", calculation.GetDataSourceRefs());
    }
    void Ends(const SMRelationshipBase2& relationship) {
        Text("left", relationship.GetLeft().refobj);
        Text("right", relationship.GetRight().refobj);
    }
    void Relationship(const SMRelationship2& relationship) {
        Ends(relationship);
        Kept("expression", relationship.GetExpression());
        Kept("sql", relationship.sql);
    }
    void MeasureScope(const SMMeasureScope2& scope) {
        if (scope.m_allocation.utf8().starts_with('[')) Text("allocation", scope.m_allocation);  // else a word such as "constant"
        Text("refobj", scope.m_refobj);
    }
    void RelationshipShortcut(const SMRelationshipShortcut2& shortcut) {
        Text("left", shortcut.leftRefObj);
        Text("right", shortcut.rightRefObj);
        Text("relationshipRef", shortcut.relationshipRef);
    }
    void DataSource(const SMDatasource2& dataSource) {
        Text("aliasTableMapRef", dataSource.GetAliasTableMapRef());
        Kept("type", dataSource.GetType());
    }
    void ParameterMap(const SMParameterMap2& map) {
        const SM_QUERY_ITEM_MAP* const items = map.GetQueryItemMap();
        if (!items) return;
        Text("keyRef", items->keyRef);
        Text("valueRef", items->valueRef);
    }
    void SecurityView(const SMSecurityView2& view) {
        for (const SMSecurityDefinitionSet2& set : view.GetDefinition()) Each("definition", set.refs);
        Kept("access", view.GetAccess());
    }
    void Package(const SMPackage2& package) {
        Each("definition", package.GetViewrefs());
        Kept("adminAccess", package.GetAdminAccess());
    }

    const SMObjectBase& m_object;
    const Visit& m_visit;
};

}  // namespace

void SMForEachReference(const SMObjectBase& object, const std::function<void(std::string_view, std::string_view)>& visit) {
    ReferenceReader(object, visit).Read();
}

SMReferencePlace SMPlaceOfReference(const SMObjectBase& object, std::string_view field) {
    SMReferencePlace place{&object, std::string(field)};
    while (SMAddressOf(*place.holder).empty()) {
        const SMObjectBase* const container = place.holder->GetParentSMObj();
        if (!container) break;
        const std::string name = SMNameOf(*place.holder);
        place.field = SMKindOf(*place.holder) + (name.empty() ? "" : " " + name) + "/" + place.field;
        place.holder = container;
    }
    return place;
}

}  // namespace schema_002_000
