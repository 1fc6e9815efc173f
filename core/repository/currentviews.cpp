#include "core/repository/currentviews.h"

#include "core/repository/schema.h"

namespace qv {

namespace {

struct NamedView {
    /** Without a type, all rows of the table. */
    std::string_view name, table, typeColumn, type;
};

constexpr NamedView VIEWS[] = {
    {"current_project", "SM_PROJECT", "", ""},
    {"current_namespace", "SM_SECTION_TYPE", "SECTION_TYPE_NAME", "namespace"},
    {"current_folder", "SM_SECTION_TYPE", "SECTION_TYPE_NAME", "folder"},
    {"current_query_subject", "SM_QUERY_SUBJECT", "QUERY_SUBJECT_TYPE_NAME", "querySubject"},
    {"current_dimension", "SM_QUERY_SUBJECT", "QUERY_SUBJECT_TYPE_NAME", "dimension"},
    {"current_update_subject", "SM_UPDATE_SUBJECT", "", ""},
    {"current_definition", "SM_DEFINITION", "", ""},
    {"current_determinant", "SM_DETERMINANT", "", ""},
    {"current_query_item", "SM_QUERY_ITEM", "QS_ITEM_TYPE_NAME", "queryItem"},
    {"current_measure", "SM_QUERY_ITEM", "QS_ITEM_TYPE_NAME", "measure"},
    {"current_query_item_folder", "SM_QUERY_ITEM_FOLDER", "ITEM_FOLDER_TYPE_NAME", "queryItemFolder"},
    {"current_measure_folder", "SM_QUERY_ITEM_FOLDER", "ITEM_FOLDER_TYPE_NAME", "measureFolder"},
    {"current_prompt_info", "SM_PROMPTINFO", "", ""},
    {ITEM_ROLE_VIEW, "SM_ROLES", "", ""},
    {"current_hierarchy", "SM_HIERARCHY", "", ""},
    {"current_level", "SM_LEVEL", "", ""},
    {"current_calculation", "SM_CALCULATION", "", ""},
    {"current_filter", "SM_FILTER", "", ""},
    {"current_relationship", "SM_RELATIONSHIP", "", ""},
    {"current_scope_relationship", "SM_SCOPE_RELATIONSHIP", "", ""},
    {"current_shortcut", "SM_SHORTCUT", "", ""},
    {"current_relationship_shortcut", "SM_RELATIONSHIP_SHORTCUT", "", ""},
    {"current_function", "SM_FUNCTION", "", ""},
    {"current_data_source", "SM_DATASOURCE", "", ""},
    {"current_package", "SM_PACKAGE", "", ""},
    {"current_security_view", "SM_SECURITY_VIEW", "", ""},
    {"current_parameter_map", "SM_PARAMETER_MAP", "", ""},
    {"current_parameter_map_entry", "SM_PARAMETER_MAP_ENTRY", "", ""},
    {"current_remaining_info", "SM_REMAIN_INFO", "", ""},
    {"current_lang_text", "SM_LANG_TEXT", "", ""},
};

}  // namespace

std::vector<ViewShape> CurrentViews() {
    std::vector<ViewShape> views;
    for (const NamedView& named : VIEWS) {
        const RowTable& table = *Schema::Get().Find(named.table);
        ViewShape view{std::string(named.name), &table.shape, {}, place::end, 0, std::string(named.type)};
        for (std::size_t column = 0; column < table.shape.columns.size(); ++column)
            if (column != place::end) view.columns.push_back(column);
        while (!named.type.empty() && view.table->columns[view.typeColumn].name != named.typeColumn) ++view.typeColumn;
        views.push_back(std::move(view));
    }
    return views;
}

}  // namespace qv
