// A service that shares the repository with models, at work with the installed libraries alone: a name of each group, and a class of each
// part of the library.
#include <iostream>
#include <string_view>

#include "core/qvutils/base/qvdate.h"
#include "core/qvutils/diag/qvlogevent.h"
#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/params/ioparams.h"
#include "core/qvutils/persist/iohelper.h"
#include "core/qvutils/text/i18nstring.h"
#include "core/qvutils/text/tklbytebuffer.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/repository/smrepository.h"
#include "objects/base/smenums_002_000.h"
#include "objects/catalogue/dbcolumn_002_000.h"
#include "objects/catalogue/repositorynames_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/face/smmodeldocument_002_000.h"
#include "objects/links/smshortcut2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

using namespace schema_002_000;

namespace {

int faults = 0;

void Expect(bool holds, const char* what) {
    if (holds) return;
    std::cerr << what << " is not what it should be\n";
    ++faults;
}

void UseNames() {
    const struct {
        const I18NString& constant;
        const char* text;
    } tables[] = {
        {SQLTAB_RUN_TIME_OBJECT, "DBM_RUN_TIME_OBJECT"}, {SQLTAB_PHYSICAL_OBJECT, "DBM_PHYSICAL_OBJECT"},
        {SQLTAB_QVP_CDC_PARAMETER, "QVP_CDC_PARAMETER"}, {SQLTAB_PCL_TASK, "PCL_TASK"},
        {SQLTAB_QVM_OBJECT_TYPE, "QVM_OBJECT_TYPE"},
    };
    for (const auto& table : tables) Expect(table.constant == I18NString(table.text), table.text);
    const struct {
        const QvULString& constant;
        const char* text;
    } columns[] = {
        {SQLCOL_STATUS, "STATUS"},                                              // Project and subject area
        {SQLCOL_CONNECTION_ID, "CONNECTION_ID"},                                // Connections
        {SQLCOL_DATASOURCE_NAME, "DATASOURCE_NAME"},                            // Data source reference
        {SQLCOL_EXT_PROC_ID, "EXT_PROC_ID"},                                    // External processes
        {SQLCOL_DATAFLOW_EXT_PROC_ID, "DATAFLOW_EXT_PROC_ID"},                  // Data flow external processes
        {SQLCOL_DATAFLOW_EXT_PROC_PARAM_ID, "PARAM_ID"},                        // Data flow external process parameters
        {SQLCOL_FOLDER_ID, "FOLDER_ID"},                                        // Folders
        {SQLCOL_QVW_MVIEW_DB_PLATFORM, "QVW_MVIEW_DB_PLATFORM"},                // Materialised views
        {SQLCOL_WH_OBJECT_VERSION, "WHO_VERSION_NO"},                           // Warehouse object head
        {SQLCOL_BALANCE_HISTORY_PERIOD_COUNT, "BALANCE_HISTORY_PERIOD_COUNT"},  // Balance handling of a warehouse object
        {SQLCOL_CALENDAR_START_DATE, "CALENDAR_START_DATE"},                    // Calendar handling
        {SQLCOL_BASE_CURRENCY_CODE, "BASE_CURRENCY_CODE"},                      // Currency handling
        {SQLCOL_QVO_CUSTOM_DATA, "QVO_CUSTOM_DATA"},                            // Custom data and execution
        {SQLCOL_OBJECT_ID, "PHYSICAL_OBJECT_ID"},                               // Physical object
        {SQLCOL_WHO_ITEM_ID_INPUT, "WHO_ITEM_ID_INPUT"},                        // Warehouse object items
        {SQLCOL_DATA_FLOW_ID, "DATA_FLOW_ID"},                                  // Data flows and transformations
        {SQLCOL_LEVEL_NUMBER_WHO_ITEM_ID, "LEVEL_NUMBER_WHO_ITEM_ID"},          // Levels and references
        {SQLCOL_PIVOT_TYPE_CODE, "PIVOT_TYPE_CODE"},                            // Pivots
        {SQLCOL_SOURCE_QUERY_ID, "SOURCE_QUERY_ID"},                            // Source queries
        {SQLCOL_WO_ITEM_ID_INPUT, "WO_ITEM_ID_INPUT"},                          // Item mappings and references
        {SQLCOL_COLUMN_ID, "PHYSICAL_COLUMN_ID"},                               // Physical column
        {SQLCOL_INDEX_ID, "PHYSICAL_OBJECT_INDEX_ID"},                          // Physical index
        {SQLCOL_FK_ID, "FOREIGN_KEY_ID"},                                       // Foreign key
        {SQLCOL_CDC_CONDITION_ID, "CDC_CONDITION_ID"},                          // Changed data capture
        {SQLCOL_LANGUAGE_CODE, "LANGUAGE_CODE"},                                // Languages
        {SQLCOL_CL_OBJECT_ID, "OBJECT_ID"},                                     // Content library tasks
        {SQLCOL_CL_TARGET_ID, "TARGET_ID"},                                     // Lineage
    };
    for (const auto& column : columns) Expect(column.constant == QvULString(column.text), column.text);
}

void UseHost() {
    Expect(QvDate(true).IsSet(), "QvDate");
    QvSmartPtr<IOHashParam> values = new IOHashParam;
    values->insertOrReplace("number", new IOLongParam(7));
    Expect(values->GetByName("number")->GetLongValue() == 7, "IOHashParam");
    TklByteBuffer bytes;
    QvByteBufferWriter(bytes).write("text");
    Expect(bytes.view() == "text", "QvByteBufferWriter");
    Expect(IOHelper().GetHelperKind() == 0, "IOHelper");
    QvSAX2Parser().setLimits(SMXMLLimits());
}

void UseModel() {
    QvSmartPtr<SMProject2> project = new SMProject2;
    QvSmartPtr<SMNamespace2> root = new SMNamespace2(project, project);
    root->AddName("", "Root");
    project->SetRootNamespace(root);
    const auto path = [](const SMObjectBase& object) { return object.GetSMID(false); };
    QvSmartPtr<SMQuerySubject2> subject = new SMQuerySubject2(root, project, root);
    subject->AddName("", "Subject");
    root->AddQuerySubject(subject);
    QvSmartPtr<SMDimension2> dimension = new SMDimension2(root, project, root);
    dimension->AddName("", "Dimension");
    root->AddDimension(dimension);
    QvSmartPtr<SMShortcut2> shortcut = new SMShortcut2(root, project);
    shortcut->SetRefObj(path(*subject));
    root->AddShortcut(shortcut);
    QvSmartPtr<SMPackage2> package = new SMPackage2(project, project);
    package->AddName("", "Package");
    project->AppendPackage(package);
    TklByteBuffer document;
    QvByteBufferWriter writer(document);
    Expect(SMWriteModel(*project, writer).IsDone(), "SMWriteModel");
    for (const char* const element : {"<querySubject", "<dimension", "<shortcut", "<package"})
        Expect(document.view().find(element) != std::string_view::npos, element);

    const DBColumn column;
    Expect(column.GetName().empty(), "DBColumn");
    const SMRenameList2 renames;
    (void)renames;
    SMRepository repository("neighbour.db", SMRepository::createIfAbsent);
    Expect(!repository.Name().empty(), "SMRepository");
}

}  // namespace

int main() {
    UseNames();
    UseHost();
    UseModel();
    if (faults == 0) std::cout << "all is where it should be\n";
    return faults;
}
