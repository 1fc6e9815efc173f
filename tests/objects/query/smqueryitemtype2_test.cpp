// What items and calculations share, tried on query items.
#include "objects/query/smqueryitemtype2_002_000.h"

#include <gmock/gmock.h>

#include "objects/query/smqueryitem2_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

using AggregationRule = SMEnum_aggregationRule;

struct Fixture {
    ProjectPtr project = NewProject();
    QvSmartPtr<SMQueryItem2> item = new SMQueryItem2(project, project);

    explicit Fixture(const std::string& elements = "") {
        SMQueryItemBuilder builder(item);
        ParseInside(builder, elements);
    }
    /** Whether an operation sets the date. */
    template <class Operation>
    bool Stamps(Operation operation) const {
        item->SetLastChangedDate(QvDate(false));
        operation();
        return item->GetLastChangedDate().IsSet();
    }
};

std::vector<std::string> RoleNames(const SMQueryItem2& item) {
    std::vector<std::string> names;
    for (const auto& role : item.GetRoles()) names.push_back(Str(role->GetName()));
    return names;
}

constexpr SMEnum_usage::Enum UNSET_USAGE = SMEnum_usage::Enum(-1);

}  // namespace

TEST(SMQueryItemType2Builder, ReadsEveryElementIntoItsField) {
    const CapturedLog log;
    const Fixture fixture(
        "<expression>x</expression><externalName>e</externalName><hidden>true</hidden><usage>fact</usage><format>f</format>"
        "<currency>c</currency><datatype>decimal</datatype><precision>10</precision><scale>2</scale><size>4294967296</size>"
        "<nullable>true</nullable><aggregationRule>count</aggregationRule><displayType>picture</displayType><mimeType>m</mimeType>"
        "<regularAggregate>maximum</regularAggregate><semiAggregate>minimum</semiAggregate><sortOnRef>[s]</sortOnRef>"
        "<unSortable>true</unSortable><sort>desending</sort><collationSequenceName>en</collationSequenceName>"
        "<collationSequenceLevel>2</collationSequenceLevel><originalCollationSequenceName>o</originalCollationSequenceName>"
        "<originalEncodingName>UTF-8</originalEncodingName>");
    const SMQueryItem2& item = *fixture.item;
    EXPECT_EQ(item.GetExpressionStr(), "x");
    EXPECT_EQ(item.GetExternalName(), "e");
    EXPECT_TRUE(item.IsHidden() && item.IsNullable() && item.IsUnSortable());
    EXPECT_EQ(item.GetUsage(), SMEnum_usage::fact);
    EXPECT_EQ(item.GetFormat(), "f");
    EXPECT_EQ(item.GetCurrency(), "c");
    EXPECT_EQ(item.GetEnumDatatype(), SMEnum_datatype::decimal);
    EXPECT_EQ(item.GetStringDatatype(), "decimal");
    EXPECT_EQ(item.GetPrecision(), 10);
    EXPECT_EQ(item.GetScale(), 2);
    EXPECT_EQ(item.GetSize(), 4294967296);
    EXPECT_EQ(item.GetAggregationRule(), AggregationRule::count);
    EXPECT_EQ(item.GetDisplayType(), SMEnum_displayType::picture);
    EXPECT_EQ(item.GetMimeType(), "m");
    EXPECT_EQ(item.GetRegularAggregate(), AggregationRule::maximum);
    EXPECT_EQ(item.GetSemiAggregate(), AggregationRule::minimum);
    EXPECT_EQ(item.GetSortOnRef(), "[s]");
    EXPECT_EQ(item.GetSort(), SMEnum_sort::desending);
    EXPECT_EQ(item.GetCollationSequenceName(), "en");
    EXPECT_EQ(item.GetCollationSequenceLevel(), 2);
    EXPECT_EQ(item.GetOriginalCollationSequenceName(), "o");
    EXPECT_EQ(item.GetOriginalEncodingName(), "UTF-8");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQueryItemType2Builder, ReadsRolesAndPromptsButNotTheirAttributes) {
    const Fixture fixture(
        "<promptInfo id=\"p\" version=\"2\"><promptType>editBox</promptType></promptInfo>"
        "<roles id=\"all\"><role id=\"r\" version=\"3\" intrinsic=\"true\"><name locale=\"en\">_memberCaption</name></role></roles>");
    EXPECT_EQ(fixture.item->GetPromptInfo()->GetPromptType(), "editBox");
    EXPECT_EQ(fixture.item->GetPromptInfo()->GetId(), "");
    EXPECT_EQ(fixture.item->GetRolesId(), "all");
    EXPECT_THAT(RoleNames(*fixture.item), testing::ElementsAre("_memberCaption"));
    EXPECT_EQ(fixture.item->GetRoles()[0]->GetId(), "");
    EXPECT_FALSE(fixture.item->GetRoles()[0]->IsIntrinsic());
}

TEST(SMQueryItemType2Builder, LogsTheOtherSpellingOfDatatype) {
    const CapturedLog log;
    const Fixture fixture("<dataType>decimal</dataType>");
    EXPECT_EQ(fixture.item->GetEnumDatatype(), SMEnum_datatype::Enum(-1));
    const LoggedEvent start{4, "", "", "realStartElement", "Unknown tag 'dataType'", ""};
    const LoggedEvent end{4, "", "", "realEndElement", "Unknown tag 'dataType'", ""};
    EXPECT_THAT(log.Events(), testing::ElementsAre(start, end));
}

TEST(SMQueryItemType2Model, HasRareFieldsEmptyUntilSet) {
    const Fixture fixture;
    fixture.item->SetFormat("");
    fixture.item->SetPromptInfo(nullptr);
    fixture.item->SetCollationSequenceLevel(0);
    EXPECT_EQ(fixture.item->GetFormat(), "");
    EXPECT_EQ(fixture.item->GetPromptInfo(), nullptr);
    EXPECT_THAT(fixture.item->GetRoles(), testing::IsEmpty());
    fixture.item->SetFormat("0.00");
    fixture.item->SetFormat("");
    EXPECT_EQ(fixture.item->GetFormat(), "");
}

TEST(SMQueryItemType2Model, StampsOnlyBasicPropertiesThatDiffer) {
    const Fixture fixture;
    const auto set = [&](long size) {
        fixture.item->SetBasicProperties(SMEnum_usage::fact, SMEnum_datatype::decimal, 10, 2, size, true, AggregationRule::count,
                                         AggregationRule::median);
    };
    EXPECT_TRUE(fixture.Stamps([&] { set(8); }));
    EXPECT_FALSE(fixture.Stamps([&] { set(8); }));
    EXPECT_TRUE(fixture.Stamps([&] { set(9); }));
    EXPECT_EQ(fixture.item->GetUsage(), SMEnum_usage::fact);
    EXPECT_EQ(fixture.item->GetEnumDatatype(), SMEnum_datatype::decimal);
    EXPECT_EQ(fixture.item->GetPrecision(), 10);
    EXPECT_EQ(fixture.item->GetScale(), 2);
    EXPECT_EQ(fixture.item->GetSize(), 9);
    EXPECT_TRUE(fixture.item->IsNullable());
    EXPECT_EQ(fixture.item->GetRegularAggregate(), AggregationRule::count);
    EXPECT_EQ(fixture.item->GetSemiAggregate(), AggregationRule::median);
}

TEST(SMQueryItemType2Model, StampsForEachBasicPropertyAlone) {
    const auto stamps = [](SMEnum_usage::Enum usage, SMEnum_datatype::Enum datatype, long precision, long scale, long size, bool nullable,
                           AggregationRule::Enum regular, AggregationRule::Enum semi) {
        const Fixture fixture;
        return fixture.Stamps([&] { fixture.item->SetBasicProperties(usage, datatype, precision, scale, size, nullable, regular, semi); });
    };
    const auto datatype = SMEnum_datatype::Enum(-1);
    const auto rule = AggregationRule::Enum(-1);
    EXPECT_FALSE(stamps(UNSET_USAGE, datatype, 0, 0, 0, false, rule, rule));
    EXPECT_TRUE(stamps(SMEnum_usage::unknown, datatype, 0, 0, 0, false, rule, rule));
    EXPECT_TRUE(stamps(UNSET_USAGE, SMEnum_datatype::unknownType, 0, 0, 0, false, rule, rule));
    EXPECT_TRUE(stamps(UNSET_USAGE, datatype, 1, 0, 0, false, rule, rule));
    EXPECT_TRUE(stamps(UNSET_USAGE, datatype, 0, 1, 0, false, rule, rule));
    EXPECT_TRUE(stamps(UNSET_USAGE, datatype, 0, 0, 1, false, rule, rule));
    EXPECT_TRUE(stamps(UNSET_USAGE, datatype, 0, 0, 0, true, rule, rule));
    EXPECT_TRUE(stamps(UNSET_USAGE, datatype, 0, 0, 0, false, AggregationRule::unsupported, rule));
    EXPECT_TRUE(stamps(UNSET_USAGE, datatype, 0, 0, 0, false, rule, AggregationRule::unsupported));
}

TEST(SMQueryItemType2Model, DoesNotStampForPlainSetters) {
    const Fixture fixture;
    EXPECT_FALSE(fixture.Stamps([&] {
        fixture.item->SetUsage(SMEnum_usage::fact);
        fixture.item->SetSize(4);
        fixture.item->SetFormat("f");
        fixture.item->SetExternalName("e");
        fixture.item->ChangeExpression("x");
        fixture.item->SetPromptInfo(new SMPromptInfo2(fixture.item, fixture.project));
        fixture.item->AddRoleOfType(SMEnum_role::_memberCaption);
        fixture.item->RemoveRoleOfType(SMEnum_role::_memberCaption);
    }));
}

TEST(SMQueryItemType2Model, CopiesBasicPropertiesDescriptionsAndScreenTips) {
    const Fixture fixture;
    const QvSmartPtr<SMQueryItem2> other = new SMQueryItem2(fixture.project, fixture.project);
    other->AddName("en", "other");
    other->SetUsage(SMEnum_usage::fact);
    other->SetFormat("0.00");
    other->ChangeExpression("x");
    other->SetProperty("custom", "", "1");
    other->AddDescription("fr", "la description");
    other->AddScreenTip("en", "tip");
    fixture.item->AddDescription("en", "stays");
    EXPECT_TRUE(fixture.item->CopyBasicProperties(*other));
    EXPECT_EQ(fixture.item->GetUsage(), SMEnum_usage::fact);
    EXPECT_EQ(fixture.item->GetDescription("en"), "stays");
    EXPECT_EQ(fixture.item->GetDescription("fr"), "la description");
    EXPECT_EQ(fixture.item->GetScreenTip(), "tip");
    EXPECT_EQ(fixture.item->GetName(), "");
    EXPECT_EQ(fixture.item->GetFormat(), "");
    EXPECT_EQ(fixture.item->GetExpression(), nullptr);
    EXPECT_EQ(fixture.item->GetProperty("custom"), nullptr);
}

TEST(SMQueryItemType2Model, AddsARoleOfAKindOnce) {
    const Fixture fixture;
    EXPECT_FALSE(fixture.item->HasRole(SMEnum_role::_memberCaption));
    fixture.item->AddRoleOfType(SMEnum_role::_memberCaption);
    fixture.item->AddRoleOfType(SMEnum_role::_memberCaption);
    EXPECT_TRUE(fixture.item->HasRole(SMEnum_role::_memberCaption));
    EXPECT_THAT(RoleNames(*fixture.item), testing::ElementsAre(Str(EnumText<SMEnum_role>(SMEnum_role::_memberCaption))));
    EXPECT_EQ(fixture.item->GetRoles()[0]->GetParentSMObj(), fixture.item);
}

TEST(SMQueryItemType2Model, RemovesTheFirstRoleOfAKind) {
    const Fixture fixture(
        "<roles><role><name locale=\"en\">a</name></role><role><name locale=\"en\">_memberCaption</name></role>"
        "<role><name locale=\"en\">_memberCaption</name></role></roles>");
    const QvSmartPtr<SMRole2> second = fixture.item->GetRoles()[2];
    fixture.item->RemoveRoleOfType(SMEnum_role::_memberCaption);
    EXPECT_THAT(RoleNames(*fixture.item), testing::ElementsAre("a", "_memberCaption"));
    EXPECT_EQ(fixture.item->GetRoles()[1], second);
    fixture.item->RemoveRoleOfType(SMEnum_role::_memberCaption);
    fixture.item->RemoveRoleOfType(SMEnum_role::_memberCaption);
    EXPECT_THAT(RoleNames(*fixture.item), testing::ElementsAre("a"));
}

TEST(SMQueryItemType2Model, LetsARemovedPromptAndRoleOutliveIt) {
    Fixture fixture;
    fixture.item->AddRoleOfType(SMEnum_role::_memberCaption);
    const QvSmartPtr<SMRole2> role = fixture.item->GetRoles()[0];
    const QvSmartPtr<SMPromptInfo2> prompt = fixture.item->AddOrUpdatePromptInfo(SMEnum_promptType::editBox, nullptr, nullptr, nullptr);
    fixture.item = nullptr;
    EXPECT_EQ(role->GetParentSMObj(), nullptr);
    EXPECT_EQ(prompt->GetParentSMObj(), nullptr);
}

TEST(SMQueryItemType2Model, RenamesInExpressionAndPrompt) {
    const Fixture fixture(
        "<expression>[A].[x].[y]</expression><promptInfo><promptUseItemRef>[A].[x].[y]</promptUseItemRef></promptInfo>"
        "<sortOnRef>[A].[x].[y]</sortOnRef>");
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.item->RenameObjects(list);
    EXPECT_EQ(fixture.item->GetExpressionStr(), "[B].[x].[y]");
    EXPECT_EQ(fixture.item->GetPromptInfo()->GetPromptUseItemRef(), "[B].[x].[y]");
    EXPECT_EQ(fixture.item->GetSortOnRef(), "[A].[x].[y]");
}

TEST(SMQueryItemType2Model, RegeneratesIdsOfAllItHolds) {
    const Fixture fixture("<expression>'old'</expression><promptInfo></promptInfo><roles><role></role></roles>");
    fixture.item->SetQvRef("old");
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.item->RegenerateIds(ids);
    EXPECT_EQ(fixture.item->GetExpressionStr(), "'new'");
    EXPECT_EQ(fixture.item->GetQvRef(), "new");
    EXPECT_NE(fixture.item->GetId(), "");
    EXPECT_NE(fixture.item->GetPromptInfo()->GetId(), "");
    EXPECT_NE(fixture.item->GetRoles()[0]->GetId(), "");
}

TEST(SMQueryItemType2Model, TakesItsPartsAlongToAnotherProject) {
    const Fixture fixture("<promptInfo></promptInfo><roles><role></role></roles>");
    const ProjectPtr other = NewProject();
    fixture.item->SetSMProject(other);
    EXPECT_EQ(fixture.item->GetSMProject(), other);
    EXPECT_EQ(fixture.item->GetPromptInfo()->GetSMProject(), other);
    EXPECT_EQ(fixture.item->GetRoles()[0]->GetSMProject(), other);
}

TEST(SMQueryItemType2Rows, LeaveFieldsAloneThatTheRowLacks) {
    const CapturedLog log;
    const Fixture fixture("<usage>fact</usage><size>4</size><format>f</format><expression>x</expression>");
    const Row row = Row()
                        .Text("id", "i")
                        .Text("name", "n")
                        .Text("description", "")
                        .Text("screenTip", "")
                        .Text("expression", "")
                        .Put("size", IOLongParam::Null());
    fixture.item->constructFromIOParameter(*row);
    EXPECT_EQ(fixture.item->GetUsage(), SMEnum_usage::fact);
    EXPECT_EQ(fixture.item->GetSize(), 4);
    EXPECT_EQ(fixture.item->GetFormat(), "f");
    EXPECT_EQ(fixture.item->GetExpressionStr(), "x");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQueryItemType2Rows, LoseTheSortButNothingBehindIt) {
    const CapturedLog log;
    const Fixture fixture;
    const Row row = Row().Text("id", "i").Text("name", "n").Text("description", "").Text("screenTip", "").Text("expression", "x");
    for (IOParameter* sort : std::initializer_list<IOParameter*>{new IOLongParam(1), new IOQvStringParam("1")}) {
        Row(row).Put("sort", sort);
        fixture.item->SetSort(SMEnum_sort::ascending);
        fixture.item->SetExpression(nullptr);
        fixture.item->constructFromIOParameter(*row);
        EXPECT_EQ(fixture.item->GetSort(), SMEnum_sort::Enum(-1));
        EXPECT_EQ(fixture.item->GetExpressionStr(), "x");
    }
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}
