#include "core/repository/catalogue.h"

namespace qv {

namespace {

constexpr CellKind S = CellKind::text, L = CellKind::number, B = CellKind::flag, D = CellKind::date;

constexpr CatalogueColumn Attribute(std::string_view name, CellKind kind, std::string_view key) {
    return {name, kind, key, KeyGroup::attribute, kind};
}
constexpr CatalogueColumn Simple(std::string_view name, CellKind kind, std::string_view key) {
    return {name, kind, key, KeyGroup::simple, kind};
}
constexpr CatalogueColumn Lang(std::string_view name, std::string_view key) {
    return {name, S, key, KeyGroup::lang, S};
}
constexpr CatalogueColumn Property(std::string_view name, std::string_view key) {
    return {name, S, key, KeyGroup::property, S};
}
constexpr CatalogueColumn Mixed(std::string_view name, std::string_view key) {
    return {name, S, key, KeyGroup::mixed, S};
}
constexpr CatalogueColumn Type(std::string_view name) {
    return {name, S, "object_type", KeyGroup::objectType, S};
}

constexpr CatalogueColumn LASTCHANGED = Attribute("LASTCHANGED", D, "lastChanged");
constexpr CatalogueColumn DISPLAY_ORDER = {"DISPLAY_ORDER", L, "display_order", KeyGroup::order, L};
constexpr CatalogueColumn NAME = Lang("NAME", "name");
constexpr CatalogueColumn DESCRIPTION = Lang("DESCRIPTION", "description");
constexpr CatalogueColumn SCREENTIP = Lang("SCREENTIP", "screenTip");
constexpr CatalogueColumn NO_DESCRIPTION = Lang("", "description");
constexpr CatalogueColumn NO_SCREENTIP = Lang("", "screenTip");
constexpr CatalogueColumn QVREF = Property("WAREHOUSE_OBJECT_ID", "qvref");
constexpr CatalogueColumn QVDBREF = Property("PHYSICAL_OBJECT_ID", "qvdbref");
constexpr CatalogueColumn EXPRESSION = [] {
    CatalogueColumn column = Mixed("EXPRESSION", "expression");
    column.comparing = Comparing::emptyAsUnset;
    return column;
}();
constexpr CatalogueColumn STATUS = Simple("STATUS", S, "status");
constexpr CatalogueColumn EXTERNALNAME = Simple("EXTERNALNAME", S, "externalName");
constexpr CatalogueColumn HIDDEN = Simple("HIDDEN", B, "hidden");
constexpr CatalogueColumn LEFT_REFOBJ = Simple("LEFT_REFOBJ", S, "left/refobj");
constexpr CatalogueColumn RIGHT_REFOBJ = Simple("RIGHT_REFOBJ", S, "right/refobj");

constexpr CatalogueColumn PROJECT[] = {LASTCHANGED, NAME, Simple("DEFAULTLOCALE", S, "defaultLocale")};

constexpr CatalogueColumn DATASOURCE[] = {
    LASTCHANGED,
    NAME,
    Simple("QUERYPROCESSING", S, "queryProcessing"),
    Simple("ROLLUPPROCESSING", S, "rollupProcessing"),
    Simple("CMDATASOURCE", S, "cmDataSource"),
    Simple("CATALOG", S, "catalog"),
    Simple("CUBE", S, "cube"),
    Simple("SCHEMA", S, "schema"),
    Simple("CONNECTIONSTRING", S, "connectionString"),
    Simple("ALIASTABLEMAPREF", S, "aliasTableMapRef"),
};

constexpr CatalogueColumn PACKAGE[] = {
    LASTCHANGED,
    NAME,
    NO_DESCRIPTION,
    NO_SCREENTIP,
    Attribute("ISROLEBASED", B, "isRoleBased"),
    Simple("LASTPUBLISHED", D, "lastPublished"),
    Attribute("MAXVERSIONS", L, "maxVersions"),
};

constexpr CatalogueColumn SECURITY_VIEW[] = {LASTCHANGED, NAME, Attribute("ISROLEBASED", B, "isRoleBased")};

constexpr CatalogueColumn PARAMETER_MAP[] = {
    LASTCHANGED, NAME, Simple("DEFAULTVALUE", S, "defaultValue"), Attribute("HIDDEN", S, "hidden"),  // the words "true" and "false"
};

constexpr CatalogueColumn PARAMETER_MAP_ENTRY[] = {LASTCHANGED, Simple("KEY", S, "key"), Simple("VALUE", S, "value")};

constexpr CatalogueColumn SECTION_TYPE[] = {LASTCHANGED, NAME, DESCRIPTION, SCREENTIP, QVREF, Type("SECTION_TYPE_NAME"), DISPLAY_ORDER};

constexpr CatalogueColumn QUERY_SUBJECT[] = {
    LASTCHANGED,
    NAME,
    DESCRIPTION,
    SCREENTIP,
    QVREF,
    Simple("EXTERNALIZEAUTOSUMMARY", B, "externalizeAutoSummary"),
    STATUS,
    Simple("EXTERNALIZEMETHOD", S, "externalizeMethod"),
    DISPLAY_ORDER,
    {"QUERY_SUBJECT_TYPE_NAME", S, "object", KeyGroup::object, S},
    Type("QUERY_TYPE_NAME"),
    QVDBREF,
    Property("TM_QS_IDENTIFIER", "qvqs_type"),
    Simple("MEMBERSROLLUP", B, "membersRollup"),
    Simple("DEFAULTHIERARCHY", S, "defaultHierarchy"),
};

constexpr CatalogueColumn UPDATE_SUBJECT[] = {
    LASTCHANGED,   NAME,
    DESCRIPTION,   SCREENTIP,
    QVREF,         Simple("EXTERNALIZEAUTOSUMMARY", B, "externalizeAutoSummary"),
    STATUS,        Simple("EXTERNALIZEMETHOD", S, "externalizeMethod"),
    DISPLAY_ORDER,
};

constexpr CatalogueColumn DEFINITION[] = {
    LASTCHANGED,
    NAME,
    DESCRIPTION,
    SCREENTIP,
    QVREF,
    Attribute("MULTIDB", B, "multiDb"),
    Simple("GENERATE_SQL", S, "generateSQL"),
    Mixed("SQL", "sql"),
    Simple("TABLE_TYPE", S, "tableType"),
};

constexpr CatalogueColumn QUERY_ITEM[] = {
    LASTCHANGED,
    NAME,
    DESCRIPTION,
    SCREENTIP,
    QVREF,
    Type("QS_ITEM_TYPE_NAME"),
    {"QS_ID", S, "", KeyGroup::none, S},
    {"QS_VERSION_NO", L, "", KeyGroup::none, L, Comparing::never},
    QVDBREF,
    Property("PHYSICAL_NAME", "physicalName"),
    DISPLAY_ORDER,
    EXTERNALNAME,
    EXPRESSION,
    {"SORT", L, "sort", KeyGroup::simple, S, Comparing::unlessUnset},  // readers take the number for a word and so lose it
    Simple("UNSORTABLE", B, "unSortable"),
    Simple("SORTONREF", S, "sortOnRef"),
    Simple("SEMIAGGREGATE", S, "semiAggregate"),
    Simple("REGULARAGGREGATE", S, "regularAggregate"),
    Simple("MIMETYPE", S, "mimeType"),
    Simple("DISPLAYTYPE", S, "displayType"),
    Simple("AGGREGATIONRULE", S, "aggregationRule"),
    Simple("SCALE", L, "scale"),
    Simple("NULLABLE", B, "nullable"),
    Simple("SIZE", L, "size"),
    Simple("PRECISION", L, "precision"),
    Simple("DATATYPE", S, "datatype"),
    Simple("CURRENCY", S, "currency"),
    Simple("FORMAT", S, "format"),
    Simple("USAGE", S, "usage"),
    HIDDEN,
    Simple("COLLATIONSEQNAME", S, "collationSequenceName"),
    Simple("COLLATIONSEQLEVEL", L, "collationSequenceLevel"),
    Simple("ORIGINALCOLLATIONSEQNAME", S, "originalCollationSequenceName"),
    Simple("ORIGINALENCODINGNAME", S, "originalEncodingName"),
    Simple("ISHIERARCHIAL", S, "isHierarchial"),
};

constexpr CatalogueColumn CALCULATION[] = {
    LASTCHANGED,
    NAME,
    NO_DESCRIPTION,
    NO_SCREENTIP,
    QVREF,
    Simple("CALCTYPE", S, "calcType"),
    EXTERNALNAME,
    Simple("SORT", S, "sort"),
    Simple("UNSORTABLE", B, "unSortable"),
    Simple("SORTONREF", S, "sortOnRef"),
    Simple("SEMIAGGREGATE", S, "semiAggregate"),
    Simple("REGULARAGGREGATE", S, "regularAggregate"),
    Simple("MIMETYPE", S, "mimeType"),
    Simple("DISPLAYTYPE", S, "displayType"),
    Simple("AGGREGATIONRULE", S, "aggregationRule"),
    Simple("SCALE", L, "scale"),
    Simple("NULLABLE", S, "nullable"),  // "t" and "f"
    Simple("CAL_SIZE", L, "size"),
    Simple("PRECISION", L, "precision"),
    Simple("DATATYPE", S, "datatype"),
    Simple("CURRENCY", S, "currency"),
    Simple("FORMAT", S, "format"),
    Simple("USAGE", S, "usage"),
    HIDDEN,
    DISPLAY_ORDER,
    STATUS,
    EXPRESSION,
};

constexpr CatalogueColumn QUERY_ITEM_FOLDER[] = {LASTCHANGED, NAME,         DESCRIPTION, SCREENTIP, QVREF, Type("ITEM_FOLDER_TYPE_NAME"),
                                                 HIDDEN,      DISPLAY_ORDER};

constexpr CatalogueColumn DETERMINANT[] = {
    LASTCHANGED,
    NAME,
    Simple("CANGROUP", B, "canGroup"),
    Simple("IDENTIFIESROW", B, "identifiesRow"),
    Simple("KEY_REFOBJS", S, "key"),
    Simple("ATTRIBUTES_REFOBJS", S, "attributes"),
};

constexpr CatalogueColumn PROMPTINFO[] = {
    LASTCHANGED,
    Simple("PROMPTTYPE", S, "promptType"),
    Simple("PROMPTCASCADEONREF", S, "promptCascadeOnRef"),
    Simple("PROMPTDISPLAYITEMREF", S, "promptDisplayItemRef"),
    Simple("PROMPTFILTERITEMREF", S, "promptFilterItemRef"),
};

constexpr CatalogueColumn FILTER[] = {LASTCHANGED, NAME, NO_DESCRIPTION, NO_SCREENTIP, STATUS, EXPRESSION, DISPLAY_ORDER};

constexpr CatalogueColumn ROLES[] = {LASTCHANGED, NAME};

constexpr CatalogueColumn HIERARCHY[] = {
    LASTCHANGED,
    NAME,
    DESCRIPTION,
    SCREENTIP,
    QVREF,
    Simple("EXTERNALNUMBEROFLEVELS", L, "externalNumberOfLevels"),
    Simple("PARENTCHILD", B, "parentChild"),
    Simple("CARDINALITY", L, "cardinality"),
    Simple("SORTEDHIERARCHY", S, "sortedHierarchy"),
    Simple("ROOTMEMBER", S, "rootMember"),
    Simple("RAGGED", B, "ragged"),
    Simple("BALANCED", B, "balanced"),
    Simple("MULTIROOT", B, "multiRoot"),
    Simple("ISWIDEFAN", B, "isWideFan"),
    Lang("ROOTCAPTION", "rootCaption"),
    Simple("ROOTMUN", S, "rootMUN"),
    EXTERNALNAME,
    DISPLAY_ORDER,
};

constexpr CatalogueColumn LEVEL[] = {
    LASTCHANGED,
    NAME,
    DESCRIPTION,
    SCREENTIP,
    QVREF,
    HIDDEN,
    Simple("ISUNIQUE", B, "isUnique"),
    EXTERNALNAME,
    Simple("EXTERNALORDINAL", L, "externalOrdinal"),
    Simple("ISMANUAL", B, "isManual"),
    DISPLAY_ORDER,
};

constexpr CatalogueColumn RELATIONSHIP[] = {
    LASTCHANGED,
    NAME,
    DISPLAY_ORDER,
    QVREF,
    Simple("LEFT_MAXCARD", S, "left/maxcard"),
    Simple("LEFT_MINCARD", S, "left/mincard"),
    LEFT_REFOBJ,
    Simple("RIGHT_MAXCARD", S, "right/maxcard"),
    Simple("RIGHT_MINCARD", S, "right/mincard"),
    RIGHT_REFOBJ,
    STATUS,
    EXPRESSION,
};

/** A scope relationship has what a relationship has, but no status and no expression. */
constexpr std::span<const CatalogueColumn> SCOPE_RELATIONSHIP(RELATIONSHIP, std::size(RELATIONSHIP) - 2);

constexpr CatalogueColumn SHORTCUT[] = {
    LASTCHANGED,   NAME, NO_DESCRIPTION, NO_SCREENTIP, Simple("REFOBJ", S, "refobj"), Simple("TARGETTYPE", S, "targetType"),
    DISPLAY_ORDER, QVREF};

constexpr CatalogueColumn RELATIONSHIP_SHORTCUT[] = {LASTCHANGED, NAME,         Simple("RELATIONSHIPREF", S, "relationshipRef"),
                                                     LEFT_REFOBJ, RIGHT_REFOBJ, DISPLAY_ORDER};

constexpr CatalogueColumn FUNCTION[] = {
    LASTCHANGED,
    NAME,
    NO_DESCRIPTION,
    NO_SCREENTIP,
    Simple("CANONICALNAME", S, "canonicalName"),
    Simple("DATASOURCEREF", S, "dataSourceRef"),
    DISPLAY_ORDER,
};

constexpr CatalogueColumn REMAIN_INFO_COLUMNS[] = {
    {"ELEMENT_ID", S, "xml_element_id", KeyGroup::attribute, S},
    {"ELEMENT_TYPE", L, "xml_element_type", KeyGroup::attribute, L},
    {"VALUE", S, "value", KeyGroup::mixed, S},
    {"DISPLAY_ORDER", L, "display_order", KeyGroup::order, L},
};

constexpr CatalogueColumn LANG_TEXT_COLUMNS[] = {
    {"NAME", S, "", KeyGroup::none, S}, {"LOCALE", S, "", KeyGroup::none, S}, {"VALUE", S, "", KeyGroup::none, S}};

constexpr CatalogueTable TABLES[] = {
    {"SM_PROJECT", "PROJECT_ID", "PROJECT_VERSION_NO", "", "", false, PROJECT},
    {"SM_SECTION_TYPE", "SECTION_ID", "SECTION_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO", false, SECTION_TYPE},
    {"SM_QUERY_SUBJECT", "QS_ID", "QS_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false, QUERY_SUBJECT},
    {"SM_UPDATE_SUBJECT", "UPDATE_QS_ID", "UPD_QS_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false, UPDATE_SUBJECT},
    {"SM_DEFINITION", "DEFINITION_ID", "DEFINITION_VERSION_NO", "QS_ID", "QS_VERSION_NO", false, DEFINITION},
    {"SM_DETERMINANT", "DETERMINANT_ID", "DETERMINANT_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false, DETERMINANT},
    {"SM_QUERY_ITEM_FOLDER", "ITEM_FOLDER_ID", "ITEM_FOLDER_VERSION_NO", "QS_ID", "QS_VERSION_NO", false, QUERY_ITEM_FOLDER},
    {"SM_QUERY_ITEM", "QS_ITEM_ID", "QS_ITEM_VERSION_NO", "ITEM_FOLDER_ID", "ITEM_FOLDER_VERSION_NO", false, QUERY_ITEM},
    {"SM_PROMPTINFO", "PROMPTINFO_ID", "PROMPTINFO_VERSION_NO", "QS_ITEM_ID", "QS_ITEM_VERSION_NO", false, PROMPTINFO},
    {"SM_ROLES", "ROLE_ID", "ROLE_VERSION_NO", "QS_ITEM_ID", "QS_ITEM_VERSION_NO", false, ROLES},
    {"SM_HIERARCHY", "HIERARCHY_ID", "HIERARCHY_VERSION_NO", "QS_ID", "QS_VERSION_NO", false, HIERARCHY},
    {"SM_LEVEL", "LEVEL_ID", "LEVEL_VERSION_NO", "HIERARCHY_ID", "HIERARCHY_VERSION_NO", false, LEVEL},
    {"SM_CALCULATION", "CALCULATION_ID", "CALC_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false, CALCULATION},
    {"SM_FILTER", "FILTER_ID", "FILTER_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false, FILTER},
    {"SM_RELATIONSHIP", "RELATIONSHIP_ID", "REL_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false, RELATIONSHIP},
    {"SM_SCOPE_RELATIONSHIP", "SCOPE_RELATIONSHIP_ID", "SCOPE_REL_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false,
     SCOPE_RELATIONSHIP},
    {"SM_SHORTCUT", "SHORTCUT_ID", "SHORTCUT_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false, SHORTCUT},
    {"SM_RELATIONSHIP_SHORTCUT", "REL_SHORTCUT_ID", "REL_SHORTCUT_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false,
     RELATIONSHIP_SHORTCUT},
    {"SM_FUNCTION", "FUNCTION_ID", "FUNCTION_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO", false, FUNCTION},
    {"SM_DATASOURCE", "DATASOURCE_ID", "DATASOURCE_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO", false, DATASOURCE},
    {"SM_PACKAGE", "PACKAGE_ID", "PACKAGE_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO", false, PACKAGE},
    {"SM_SECURITY_VIEW", "SVIEW_ID", "SVIEW_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO", false, SECURITY_VIEW},
    {"SM_PARAMETER_MAP", "PARAMETER_MAP_ID", "PARAMETER_MAP_VERSION_NO", "PROJECT_ID", "PROJECT_VERSION_NO", false, PARAMETER_MAP},
    {"SM_PARAMETER_MAP_ENTRY", "PARAMETER_MAP_ENTRY_ID", "PARAMETER_MAP_ENTRY_VER_NO", "PARAMETER_MAP_ID", "PARAMETER_MAP_VERSION_NO",
     false, PARAMETER_MAP_ENTRY},
    {REMAIN_INFO, "NAME", "ELEMENT_VERSION_NO", "PARENT_ID", "PARENT_VERSION_NO", true, REMAIN_INFO_COLUMNS},
    {LANG_TEXT, "OBJECT_ID", "OBJECT_VERSION_NO", "", "", false, LANG_TEXT_COLUMNS},
};

constexpr CatalogueKind KINDS[] = {
    {"project", "SM_PROJECT", "", ""},
    {"namespace", "SM_SECTION_TYPE", "SECTION_TYPE_NAME", "namespace"},
    {"generic_section_type", "SM_SECTION_TYPE", "", ""},
    {"generic_query_subject_type", "SM_QUERY_SUBJECT", "", ""},
    {"updateSubject", "SM_UPDATE_SUBJECT", "", "", true},
    {"definition2", "SM_DEFINITION", "", ""},
    {"determinants/determinant", "SM_DETERMINANT", "", ""},
    {"queryItemFolder", "SM_QUERY_ITEM_FOLDER", "ITEM_FOLDER_TYPE_NAME", "queryItemFolder"},
    {"measureFolder", "SM_QUERY_ITEM_FOLDER", "ITEM_FOLDER_TYPE_NAME", "measureFolder"},
    {"queryItem", "SM_QUERY_ITEM", "QS_ITEM_TYPE_NAME", "queryItem"},
    {"measure", "SM_QUERY_ITEM", "QS_ITEM_TYPE_NAME", "measure"},
    {"promptInfo", "SM_PROMPTINFO", "", ""},
    {"roles/role", "SM_ROLES", "", ""},
    {"hierarchy", "SM_HIERARCHY", "", ""},
    {"level", "SM_LEVEL", "", ""},
    {"calculation", "SM_CALCULATION", "", ""},
    {"filter", "SM_FILTER", "", ""},
    {"relationship", "SM_RELATIONSHIP", "", ""},
    {"scopeRelationship", "SM_SCOPE_RELATIONSHIP", "", ""},
    {"shortcut", "SM_SHORTCUT", "", ""},
    {"relationshipShortcut", "SM_RELATIONSHIP_SHORTCUT", "", ""},
    {"function", "SM_FUNCTION", "", ""},
    {"dataSource", "SM_DATASOURCE", "", ""},
    {"package", "SM_PACKAGE", "", ""},
    {"securityView", "SM_SECURITY_VIEW", "", ""},
    {"parameterMap", "SM_PARAMETER_MAP", "", ""},
    {"parameterMapEntry", "SM_PARAMETER_MAP_ENTRY", "", ""},
};

constexpr std::string_view UNREAD_RECORDS[] = {"previewFilters", "securityFilters", "procParameters"};

constexpr UnreadChild UNREAD_CHILDREN[] = {{"SM_HIERARCHY", "SM_QUERY_ITEM"}, {"SM_HIERARCHY", "SM_QUERY_ITEM_FOLDER"}};

}  // namespace

std::span<const CatalogueTable> CatalogueTables() {
    return TABLES;
}

std::span<const CatalogueKind> CatalogueKinds() {
    return KINDS;
}

std::span<const std::string_view> UnreadRecords() {
    return UNREAD_RECORDS;
}

std::span<const UnreadChild> UnreadChildren() {
    return UNREAD_CHILDREN;
}

}  // namespace qv
