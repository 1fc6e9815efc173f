#include "objects/query/smfilterrecords_002_000.h"

#include <gmock/gmock.h>

#include "core/qvutils/xml/qvxmlattributes.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

using Tag = SMEnum_xmltag::Enum;
using Records = SMFilterRecords<I18NString>;
using Reader = SMFilterReader<I18NString>;

QvSmartPtr<SMXMLObject2> Expression(const char* inner) {
    return new SMXMLObject2("expression", inner, true);
}

SMFilterStep Start(Reader& reader, Tag tag, const char* type = nullptr) {
    QvXMLAttributesImpl attrs;
    if (type) attrs.push_back("type", type);
    return reader.Start(tag, attrs);
}

/** Start and end of an element that holds text; what the end answers. */
bool Text(Reader& reader, Tag tag, const char* text) {
    EXPECT_EQ(Start(reader, tag), SMFilterStep::collect);
    return reader.End(tag, text);
}

void Open(Reader& reader, std::initializer_list<Tag> tags) {
    for (const Tag tag : tags) EXPECT_EQ(Start(reader, tag), SMFilterStep::done);
}

}  // namespace

TEST(SMFilterRecordsXml, IsEmptyWithoutFilters) {
    Records records;
    EXPECT_EQ(records.PreviewsToString(), "");
    EXPECT_EQ(records.SecuritiesToString(), "");
    records.EditPreviews().emplace_back();
    EXPECT_EQ(records.PreviewsToString(), "<previewFilters><previewFilter></previewFilter></previewFilters>");
    EXPECT_EQ(records.SecuritiesToString(), "") << "each kind for itself";
}

TEST(SMFilterRecordsXml, WritesReferenceNameAndExpressionWhereTheyAre) {
    Records records;
    records.EditPreviews() = {{"[a].[f]", "by reference", nullptr}, {"", "a & b", Expression("1 &lt; 2")}};
    EXPECT_EQ(records.PreviewsToString(),
              "<previewFilters><previewFilter><refobj>[a].[f]</refobj><displayName>by reference</displayName></previewFilter>"
              "<previewFilter><displayName>a &amp; b</displayName><expression>1 &lt; 2</expression></previewFilter></previewFilters>");
}

TEST(SMFilterRecordsXml, WritesASecurityObjectAlwaysAndABaseWhenSet) {
    Records records;
    records.EditSecurities().emplace_back();
    records.EditSecurities().push_back({SMEnum_securityObjectType::group, "path", "search", "base", "[a].[f]", "name", Expression("x")});
    EXPECT_EQ(
        records.SecuritiesToString(),
        "<securityFilters><securityFilterDefinition><securityObject type=\"\"><displayPath></displayPath><cmSearchPath></cmSearchPath>"
        "</securityObject></securityFilterDefinition><securityFilterDefinition><securityObject type=\"group\">"
        "<displayPath>path</displayPath><cmSearchPath>search</cmSearchPath></securityObject>"
        "<basedOn><cmSearchPath>base</cmSearchPath></basedOn><refobj>[a].[f]</refobj><displayName>name</displayName>"
        "<expression>x</expression></securityFilterDefinition></securityFilters>");
}

TEST(SMFilterRecordsModel, SharesNothingAmongEmptyLists) {
    Records one, other;
    EXPECT_EQ(&one.Previews(), &other.Previews());
    one.EditPreviews().emplace_back();
    EXPECT_TRUE(other.Previews().empty());
}

TEST(SMFilterRecordsModel, RenamesReferencesAndExpressionsOfBothKinds) {
    Records records;
    records.EditPreviews().push_back({"[A].[x].[y]", "[A].[x].[y]", Expression("[A].[x].[z]")});
    records.EditSecurities().push_back(
        {SMEnum_securityObjectType::role, "[A].[x].[y]", "", "", "[A].[x].[y]", "", Expression("[A].[x].[z]")});
    records.EditPreviews().emplace_back();
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    records.RenameObjects(list);
    EXPECT_EQ(records.Previews()[0].refobj, "[B].[x].[y]");
    EXPECT_EQ(records.Previews()[0].displayName, "[A].[x].[y]") << "a name is no reference";
    EXPECT_EQ(InnerXmlOf(records.Previews()[0].expression), "[B].[x].[z]");
    EXPECT_EQ(records.Securities()[0].refobj, "[B].[x].[y]");
    EXPECT_EQ(records.Securities()[0].displayPath, "[A].[x].[y]");
    EXPECT_EQ(InnerXmlOf(records.Securities()[0].expression), "[B].[x].[z]");
    Records().RenameObjects(list);
}

TEST(SMFilterRecordsModel, CarriesNewIdsIntoExpressions) {
    Records records;
    records.EditPreviews().push_back({"'old'", "", Expression("'old'")});
    records.EditSecurities().emplace_back().expression = Expression("'old' and 'other'");
    records.EditSecurities().emplace_back();
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    records.RegenerateIds(ids);
    EXPECT_EQ(records.Previews()[0].refobj, "'old'");
    EXPECT_EQ(InnerXmlOf(records.Previews()[0].expression), "'new'");
    EXPECT_EQ(InnerXmlOf(records.Securities()[0].expression), "'new' and 'other'");
}

TEST(SMFilterReaderModel, ReadsEachListIntoItsOwnRecords) {
    Records records;
    Reader reader(records);
    Open(reader, {Tag::previewFilters, Tag::previewFilter});
    EXPECT_TRUE(Text(reader, Tag::refobj, "r"));
    EXPECT_TRUE(Text(reader, Tag::displayName, "n"));
    EXPECT_EQ(Start(reader, Tag::expression), SMFilterStep::keep);
    reader.SetExpression(Expression("1"));
    EXPECT_TRUE(reader.End(Tag::previewFilter, ""));
    EXPECT_TRUE(reader.End(Tag::previewFilters, ""));
    Open(reader, {Tag::securityFilters, Tag::securityFilterDefinition});
    EXPECT_EQ(Start(reader, Tag::securityObject, "role"), SMFilterStep::done);
    Text(reader, Tag::cmSearchPath, "of the object");
    EXPECT_TRUE(reader.End(Tag::securityObject, ""));
    Text(reader, Tag::cmSearchPath, "of the base");
    Text(reader, Tag::displayName, "sn");
    EXPECT_EQ(Start(reader, Tag::expression), SMFilterStep::keep);
    reader.SetExpression(Expression("2"));

    ASSERT_EQ(records.Previews().size(), 1u);
    EXPECT_EQ(records.Previews()[0].refobj, "r");
    EXPECT_EQ(records.Previews()[0].displayName, "n");
    EXPECT_EQ(InnerXmlOf(records.Previews()[0].expression), "1");
    ASSERT_EQ(records.Securities().size(), 1u);
    EXPECT_EQ(records.Securities()[0].type, SMEnum_securityObjectType::role);
    EXPECT_EQ(records.Securities()[0].cmSearchPath, "of the object");
    EXPECT_EQ(records.Securities()[0].basedOnCmSearchPath, "of the base");
    EXPECT_EQ(records.Securities()[0].displayName, "sn");
    EXPECT_EQ(InnerXmlOf(records.Securities()[0].expression), "2");
}

TEST(SMFilterReaderModel, GivesADisplayPathToTheLastRecordWhereverItStands) {
    Records records;
    Reader reader(records);
    Open(reader, {Tag::securityFilters, Tag::securityFilterDefinition});
    reader.End(Tag::securityFilterDefinition, "");
    reader.End(Tag::securityFilters, "");
    EXPECT_TRUE(Text(reader, Tag::displayPath, "behind the list"));
    EXPECT_EQ(records.Securities()[0].displayPath, "behind the list");
}

TEST(SMFilterReaderModel, StaysWithItsRecordsWhileTheListsGrow) {
    Records records;
    Reader reader(records);
    Open(reader, {Tag::securityFilters});
    for (int record = 0; record < 100; ++record) {
        Open(reader, {Tag::securityFilterDefinition});
        Text(reader, Tag::displayName, std::to_string(record).c_str());
        reader.End(Tag::securityFilterDefinition, "");
    }
    for (int record = 0; record < 100; ++record)
        EXPECT_EQ(records.Securities()[static_cast<std::size_t>(record)].displayName, std::to_string(record).c_str());
}

TEST(SMFilterReaderModel, DropsValuesBeforeAnyRecord) {
    Records records;
    Reader reader(records);
    EXPECT_TRUE(Text(reader, Tag::displayPath, "x"));
    Open(reader, {Tag::previewFilters});
    EXPECT_TRUE(Text(reader, Tag::displayName, "x"));
    EXPECT_EQ(Start(reader, Tag::expression), SMFilterStep::done) << "nobody keeps it";
    Open(reader, {Tag::securityFilters});
    EXPECT_TRUE(Text(reader, Tag::cmSearchPath, "x"));
    EXPECT_EQ(Start(reader, Tag::securityObject, "role"), SMFilterStep::done);
    EXPECT_TRUE(records.Previews().empty());
    EXPECT_TRUE(records.Securities().empty());
}

TEST(SMFilterReaderModel, LeavesWhatStandsOutsideToTheBuilder) {
    Records records;
    Reader reader(records);
    EXPECT_EQ(Start(reader, Tag::expression), SMFilterStep::notMine);
    EXPECT_EQ(Start(reader, Tag::queryItem), SMFilterStep::notMine);
    EXPECT_FALSE(reader.End(Tag::queryItem, ""));
    EXPECT_FALSE(Text(reader, Tag::refobj, "of a list of the calculation"));
}
