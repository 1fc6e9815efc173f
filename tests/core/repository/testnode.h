#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/params/ionames.h"
#include "core/qvutils/params/ioparams.h"
#include "core/qvutils/persist/iohelper.h"
#include "core/repository/catalogue.h"

/** A stored object without a model class: what it sends and what it asks for is told from outside. */
class TestNode : public IOObject {
  public:
    using Value = std::function<IOParameter*()>;

    TestNode(IOObject* parentNode, std::string_view tableName, std::string_view nodeId = {})
        : IOObject(parentNode, false), table(*qv::FindTable(tableName)) {
        id = QvULString(nodeId);
    }

    static Value Text(std::string text) {
        return [text] { return new IOQvStringParam(I18NString(std::string_view(text))); };
    }
    static Value Number(long number) {
        return [number] { return new IOLongParam(number); };
    }
    static Value Flag(bool flag) {
        return [flag] { return new IOBoolParam(flag); };
    }

    TestNode& Set(std::string_view column, Value value) {
        for (auto& [name, old] : columns)
            if (name == QvULString(column)) return old = std::move(value), *this;
        columns.emplace_back(QvULString(column), std::move(value));
        return *this;
    }
    TestNode& Named(std::string text) { return Set("NAME", Text(std::move(text))); }
    void Drop(std::string_view column) {
        std::erase_if(columns, [&](const auto& pair) { return pair.first == QvULString(column); });
    }

    /** A child, the last of all. */
    TestNode& Add(std::string_view tableName, std::string_view nodeId = {}) {
        children.emplace_back(new TestNode(this, tableName, nodeId));
        return *children.back();
    }
    TestNode& AddSection(std::string name, std::string_view nodeId = {}, const char* type = "namespace") {
        return Add("SM_SECTION_TYPE", nodeId).Named(std::move(name)).Set("SECTION_TYPE_NAME", Text(type));
    }
    TestNode& AddEntry(const std::string& key, const std::string& value, std::string_view nodeId = {}) {
        return Add("SM_PARAMETER_MAP_ENTRY", nodeId).Set("KEY", Text(key)).Set("VALUE", Text(value));
    }
    void Remove(const TestNode& child) {
        std::erase_if(children, [&](const QvSmartPtr<TestNode>& other) { return other.get() == &child; });
    }
    TestNode& Child(std::size_t at) const { return *children.at(at); }

    /** Writes a record of remaining info as the library does: only where the context does not know it as it is. */
    bool WriteRecord(IOHelper& helper, const std::string& name, const std::string& text) {
        const std::string whole = std::string(id.utf8()) + "/" + name;
        const QvULString recordId(std::string_view(whole).substr(0, 50));
        long version = 1;
        if (const RemainingInfoEntry* const entry = helper.doWriteLookUpRemainingInfo(recordId)) {
            if (!helper.GetFixingLostRemainingInfo() && entry->parentVersion == GetVersionNo() && entry->value.utf8() == text) return true;
            version = entry->version + 1;
        }
        QvSmartPtr<IOHashParam> row = new IOHashParam, params = new IOHashParam;
        row->insertOrReplace(IOParamTag::XML_ELEMENT_ID, new IOQvStringParam(recordId));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_VERSION, new IOLongParam(version));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_PARENT_ID, new IOQvStringParam(id));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_PARENT_VERSION, new IOLongParam(GetVersionNo()));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_TYPE, new IOLongParam(6));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_NAME, new IOQvStringParam(I18NString(std::string_view(name))));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_VALUE, new IOQvStringParam(I18NString(std::string_view(text))));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_ORDER, new IOLongParam(0));
        params->insertOrReplace(IOParamTag::ATTRIBUTES, row.get());
        return helper.DoWriteAction(IOAction::AT_WriteRemainingInfo, *params) && helper.EndObject();
    }

    bool WriteText(IOHelper& helper, const char* tag, const char* locale, const char* text) {
        QvSmartPtr<IOHashParam> row = new IOHashParam, params = new IOHashParam;
        row->insertOrReplace(IOParamTag::XML_ELEMENT_ID, new IOQvStringParam(id));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_VERSION, new IOLongParam(GetVersionNo()));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_LOCALE, new IOQvStringParam(locale));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_NAME, new IOQvStringParam(tag));
        row->insertOrReplace(IOParamTag::XML_ELEMENT_VALUE, new IOQvStringParam(text));
        params->insertOrReplace(IOParamTag::ATTRIBUTES, row.get());
        return helper.DoWriteAction(IOAction::AT_WriteLangText, *params);
    }

    void constructFromIOParameter(const IOParameter& row) override {
        id = row.GetByName("id")->GetQvULStringValue();
        SetVersionNo(static_cast<int>(row.GetByName("version")->GetLongValue()));
        SetLastChangedDate(row.GetByName("lastChanged")->GetDateValue());
        for (QvSmartPtr<IOParamPairIterator> pair = row.GetPairIterator(); !pair->atEnd(); pair->advance()) {
            const qv::CatalogueColumn* const column = qv::FindKey(table, pair->key().utf8());
            const QvSmartPtr<IOParameter> value = pair->value();
            if (!column || column->name.empty() || column->name == "LASTCHANGED" || value->IsNull()) continue;
            if (column->kind != column->readAs) continue;  // what readers cannot take they lose
            switch (value->GetKind()) {
            case IOParameter::kindLong: Set(column->name, Number(value->GetLongValue())); break;
            case IOParameter::kindBool: Set(column->name, Flag(value->GetBoolValue())); break;
            case IOParameter::kindDate: Set(column->name, [date = value->GetDateValue()] { return new QvDateParam(date); }); break;
            default: Set(column->name, Text(std::string(value->GetQvStringValue().utf8()))); break;
            }
        }
    }

    bool read(IOHelper& helper) override {
        for (const char* const kind : KindsBelow()) {
            QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
            if (!ReadKind(helper, kind, *rows)) return false;
            for (int at = 0; at < rows->Size(); ++at) {
                TestNode& child = Add(qv::FindKind(kind)->table);
                child.constructFromIOParameter(*rows->At(at));
                if (!child.read(helper)) return false;
            }
        }
        return ReadRecords(helper);
    }

    bool ReadKind(IOHelper& helper, const char* kind, IOArrayParam& rows) {
        QvSmartPtr<IOHashParam> params = new IOHashParam;
        getInputParams(*params, kind, nullptr);
        params->insertOrReplace(IOParamTag::ATTRIBUTES, new IOHashParam);
        return helper.DoReadAction(IOAction::AT_ReadSMObject, *params, rows);
    }

    bool ReadRecords(IOHelper& helper) {
        QvSmartPtr<IOHashParam> params = new IOHashParam;
        QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
        getInputParams(*params, "", nullptr);
        if (!helper.DoReadAction(IOAction::AT_ReadRemainingInfo, *params, *rows)) return false;
        for (int at = 0; at < rows->Size(); ++at) {
            const QvSmartPtr<IOParameter> row = rows->At(at);
            records[std::string(row->GetByName(IOParamTag::XML_ELEMENT_NAME)->GetQvStringValue().utf8())] =
                row->GetByName(IOParamTag::XML_ELEMENT_VALUE)->GetQvStringValue().utf8();
        }
        return true;
    }

    I18NString GetVersionCol() const override { return Column(table.version); }
    I18NString GetIdCol() const override { return Column(table.id); }
    I18NString GetParentVersionCol() const override { return Column(table.parentVersion); }
    I18NString GetParentIdCol() const override { return Column(table.parentId); }
    void getAttributes(IOParameter& attrs, IOParameter& history) override {
        IOObject::getAttributes(attrs, history);
        for (const auto& [name, value] : columns) attrs.insertOrReplace(name, value());
    }
    int GetModelType() override { return 9; }
    void getPath(I18NString& out) const override { out = I18NString(std::string_view("path of " + std::string(id.utf8()))); }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& list) const override {
        for (const QvSmartPtr<TestNode>& child : children) list.push_back(child.get());
    }

    bool write_no_seq_inc(IOHelper& helper) override {
        QvSmartPtr<IOHashParam> attrs = new IOHashParam, history = new IOHashParam, params = new IOHashParam;
        getAttributes(*attrs, *history);
        params->insertOrReplace(IOParamTag::ATTRIBUTES, attrs.get());
        params->insertOrReplace(IOParamTag::HISTORY_ATTRIBUTES, history.get());
        params->insertOrReplace(IOParamTag::TABLE_NAME, new IOQvStringParam(I18NString(sentTable.empty() ? table.name : sentTable)));
        params->insertOrReplace(IOParamTag::OBJECT, new IOQvStringParam(I18NString(table.name)));
        ++rowsSent;
        if (!helper.DoWriteAction(IOAction::AT_InsertObject, *params)) return false;
        for (const auto& [locale, name] : names)
            if (!WriteText(helper, "name", locale.c_str(), name.c_str())) return false;
        return write_next(helper) && helper.EndObject();
    }
    void VisitTexts(IOTextVisitor& visitor) const override {
        for (const auto& [locale, name] : names)
            visitor.Visit("name", QvULString(std::string_view(locale)), QvULString(std::string_view(name)));
    }
    bool write_next(IOHelper& helper) override {
        ++walks;
        if (onWrite) onWrite(*this);
        for (const QvSmartPtr<TestNode>& child : children)
            if (!child->write(helper)) return false;
        for (const auto& [name, text] : records)
            if (!WriteRecord(helper, name, text)) return false;
        return writes;
    }

    /** The node and all below it, one line each: table, id, version, texts and records. */
    std::string Dump(bool versions = true, int depth = 0) const {
        std::string text(static_cast<std::size_t>(depth), ' ');
        text += std::string(table.name) + " " + std::string(id.utf8());
        if (versions) text += " v" + std::to_string(versionNo);
        std::map<std::string, Value> sorted;
        for (const auto& [name, value] : columns) sorted.emplace(name.utf8(), value);
        for (const auto& [name, value] : sorted)
            text += " " + name + "=" + std::string(QvSmartPtr<IOParameter>(value())->toString("").utf8());
        for (const auto& [name, value] : records) text += " {" + name + ": " + value + "}";
        text += "\n";
        for (const QvSmartPtr<TestNode>& child : children) text += child->Dump(versions, depth + 1);
        return text;
    }

    const qv::CatalogueTable& table;
    std::string_view sentTable;
    std::vector<std::pair<QvULString, Value>> columns;
    std::vector<QvSmartPtr<TestNode>> children;
    std::map<std::string, std::string> records;
    /** In other locales. */
    std::map<std::string, std::string> names;
    std::function<void(TestNode&)> onWrite;
    bool writes = true;
    int rowsSent = 0, walks = 0;

  private:
    I18NString Column(std::string_view name) const { return I18NString(table.name == "SM_FUNCTION" ? std::string_view() : name); }

    std::vector<const char*> KindsBelow() const {
        if (table.name == "SM_PROJECT") return {"namespace", "dataSource", "package", "parameterMap", "securityView"};
        if (table.name == "SM_PARAMETER_MAP") return {"parameterMapEntry"};
        if (table.name == "SM_SECTION_TYPE")
            return {"generic_section_type", "generic_query_subject_type", "updateSubject", "filter", "function"};
        if (table.name == "SM_QUERY_SUBJECT")
            return {"definition2", "hierarchy", "queryItem", "measure", "queryItemFolder", "measureFolder", "determinants/determinant"};
        if (table.name == "SM_UPDATE_SUBJECT") return {"definition2"};
        if (table.name == "SM_QUERY_ITEM_FOLDER") return {"queryItem", "measure", "queryItemFolder", "measureFolder"};
        if (table.name == "SM_QUERY_ITEM") return {"promptInfo", "roles/role"};
        return {};
    }
};

/** A project node read from a context, or null when the read failed. */
inline QvSmartPtr<TestNode> ReadTestProject(IOHelper& helper) {
    QvSmartPtr<TestNode> project = new TestNode(nullptr, "SM_PROJECT");
    QvSmartPtr<IOHashParam> params = new IOHashParam;
    QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
    params->insertOrReplace(IOParamTag::OBJECT, new IOQvStringParam("project"));
    for (const QvULString& key : {IOParamTag::ATTRIBUTES, IOParamTag::HISTORY_ATTRIBUTES, IOParamTag::CLAUSES})
        params->insertOrReplace(key, new IOHashParam);
    if (!helper.DoReadAction(IOAction::AT_ReadSMProject, *params, *rows)) return nullptr;
    if (rows->Size() > 0) project->constructFromIOParameter(*rows->At(0));
    return project->read(helper) ? project : nullptr;
}

/** Keeps what is logged while it lives. */
class CaughtLog : public SMLogSink {
  public:
    CaughtLog() : m_scope(*this) {}
    void Take(const QvLogEvent& event, const SMSourceContext*) override {
        levels.push_back(event.level);
        messages.emplace_back(event.message.utf8());
    }
    std::string Only() const { return messages.size() == 1 ? messages.front() : std::to_string(messages.size()) + " messages"; }

    std::vector<int> levels;
    std::vector<std::string> messages;

  private:
    SMLogScope m_scope;
};
