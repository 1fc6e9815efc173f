#include "objects/transforms/smrenamelist2_002_000.h"

#include <string>

#include "core/qvutils/text/qvstringformat.h"
#include "core/qvutils/xml/qvsax2parser.h"

namespace schema_002_000 {

namespace {

constexpr std::string_view NEXT_PART = "].[";

bool IsNextPart(std::string_view text, std::size_t at) {
    return text.substr(at, NEXT_PART.size()) == NEXT_PART;
}

}  // namespace

SMRenameList2::SMRenameList2() = default;
SMRenameList2::~SMRenameList2() = default;

// ---- the table

void SMRenameList2::AddRename(const I18NString& oldNamespace, const I18NString& oldName, const I18NString& oldItem,
                              const I18NString& newNamespace, const I18NString& newName, const I18NString& newItem) {
    if (oldNamespace == newNamespace && oldName == newName && oldItem == newItem) return;
    renames[oldNamespace][oldName].emplace(oldItem, Record{newNamespace, newName, newItem});
}

void SMRenameList2::AddRenameNamespace(const I18NString& oldName, const I18NString& newName) {
    AddRename(oldName, I18NString(), I18NString(), newName, I18NString(), I18NString());
    renameTargets.insert(newName);
}

void SMRenameList2::AddRenameUniqueNamespace(const I18NString& oldName, const SMNamespaceMap& first, const SMNamespaceMap& second,
                                             I18NString& result) {
    I18NString base;
    long suffix = 0;
    _SplitNameAndSuffix(oldName, base, suffix);
    _FindUniqueSuffixUsingNamespaceMapAndRenameTargets(base, suffix, first, second, result);
    AddRenameNamespace(oldName, result);
}

const SMRenameList2::Record* SMRenameList2::FindRecord(const I18NString& nameSpace, const I18NString& name, const I18NString& item) const {
    const auto inNamespace = renames.find(nameSpace);
    if (inNamespace == renames.end()) return nullptr;
    const Names& byName = inNamespace->second;
    const I18NString any;
    auto items = byName.find(name);
    const bool named = items != byName.end();
    if (!named) items = byName.find(any);
    if (items == byName.end()) return nullptr;
    auto record = named ? items->second.find(item) : items->second.find(any);
    if (named && record == items->second.end()) record = items->second.find(any);
    return record == items->second.end() ? nullptr : &record->second;
}

bool SMRenameList2::PerformRenames(I18NString& nameSpace, I18NString& name, I18NString& item) {
    const Record* record = FindRecord(nameSpace, name, item);
    if (!record) return false;
    nameSpace = record->newNamespace;  // also when empty
    if (!record->newName.empty()) name = record->newName;
    if (!record->newItem.empty()) item = record->newItem;
    return true;
}

// ---- texts

bool SMRenameList2::PerformRenames(QvULString& text) {
    I18NString wide = text;
    if (!PerformRenames(wide)) return false;
    text = wide;
    return true;
}

bool SMRenameList2::PerformRenames(I18NString& i18nText) {
    const std::string_view text = i18nText.utf8();
    if (text.find('[') == std::string_view::npos) return false;
    std::string out;
    bool found = false;
    std::size_t position = 0;
    const auto copyTo = [&](std::size_t end) {
        out.append(text.substr(position, end - position));
        position = end;
    };
    const auto npos = std::string_view::npos;
    bool anyClose = true;  // once there is no further "]", none is looked for again: a text of open brackets stays linear
    const auto findClose = [&](std::size_t from) {
        const std::size_t close = anyClose ? text.find(']', from) : npos;
        anyClose = close != npos;
        return close;
    };

    for (;;) {
        const std::size_t open = text.find('[', position);
        if (open == npos) break;
        copyTo(open);
        ++position;  // as the format has it: the bracket is written again with a complete reference only
        const std::size_t firstEnd = findClose(position);
        if (firstEnd == npos) continue;
        if (!IsNextPart(text, firstEnd)) {
            copyTo(firstEnd + 1);
            continue;
        }
        const std::size_t second = firstEnd + NEXT_PART.size();
        const std::size_t secondEnd = findClose(second);
        if (secondEnd == npos) {
            copyTo(second);
            continue;
        }
        if (!IsNextPart(text, secondEnd)) {
            copyTo(secondEnd);
            continue;
        }
        const std::size_t third = secondEnd + NEXT_PART.size();
        const std::size_t thirdEnd = findClose(third);
        if (thirdEnd == npos) {
            copyTo(third);
            continue;
        }
        I18NString nameSpace(text.substr(position, firstEnd - position));
        I18NString name(text.substr(second, secondEnd - second));
        I18NString item(text.substr(third, thirdEnd - third));
        found = PerformRenames(nameSpace, name, item);  // the last reference decides for the whole text
        out.append("[").append(nameSpace.utf8()).append("].[").append(name.utf8()).append("].[").append(item.utf8()).append("]");
        position = thirdEnd + 1;

        std::size_t end = thirdEnd;
        while (end != npos && IsNextPart(text, end)) end = findClose(end + NEXT_PART.size());
        if (end == npos) break;
        copyTo(end + 1);
    }
    if (!found) return false;
    copyTo(text.size());
    i18nText = I18NString(std::string_view(out));
    return true;
}

void SMRenameList2::PerformRenamesEscaped(TklByteBuffer& xml) {
    TklByteBuffer document(256, 256);
    document.reserve(xml.pcount() + 16);
    document << "<dummy>" << xml << "</dummy>";
    xml.reset();
    QvByteBufferWriter writer(xml);
    SAX2RenameHandler handler(writer, this);
    if (!parser) parser = std::make_unique<QvSAX2Parser>();
    struct HandlerScope {
        QvSAX2Parser& parser;
        ~HandlerScope() { parser.setContentHandler(nullptr); }
    };
    const HandlerScope scope{*parser};
    parser->setContentHandler(&handler);
    parser->parse(document);
    xml.shrink();
}

// ---- unique names

void SMRenameList2::_SplitNameAndSuffix(const I18NString& name, I18NString& base, long& suffix) {
    const QvStringFormat* format = QvStringFormat::GetInstance();
    const std::string_view text = name.utf8();
    std::size_t start = text.size();
    while (start > 0 && format->_isNumeric(I18NString(text.substr(start - 1)))) --start;
    base = I18NString(text.substr(0, start));
    suffix = start == text.size() ? 0 : format->_string2long(I18NString(text.substr(start)));
}

void SMRenameList2::_AddSuffixToName(I18NString& name, long suffix) {
    if (suffix > 0) name.append(std::to_string(suffix));
}

void SMRenameList2::_FindUniqueSuffixUsingNamespaceMap(const I18NString& base, long suffix, const SMNamespaceMap& existing,
                                                       I18NString& result) {
    // the empty name counts as taken: a namespace without a name would break ids and paths
    for (;; ++suffix) {
        result = base;
        _AddSuffixToName(result, suffix);
        if (!result.empty() && existing.find(result) == existing.end()) return;
    }
}

void SMRenameList2::_FindUniqueSuffixUsingNamespaceMapAndRenameTargets(const I18NString& base, long suffix, const SMNamespaceMap& first,
                                                                       const SMNamespaceMap& second, I18NString& result) const {
    for (;; ++suffix) {
        result = base;
        _AddSuffixToName(result, suffix);
        if (!result.empty() && first.find(result) == first.end() && renameTargets.find(result) == renameTargets.end() &&
            second.find(result) == second.end())
            return;
    }
}

I18NString SMRenameList2::GenerateUniqueNamespaceName(const I18NString& name, const SMNamespaceMap& existing) {
    I18NString base, result;
    long suffix = 0;
    _SplitNameAndSuffix(name, base, suffix);
    _FindUniqueSuffixUsingNamespaceMap(base, suffix, existing, result);
    return result;
}

// ---- XML fragments

SAX2RenameHandler::SAX2RenameHandler(QvXMLFormatTarget& target, SMRenameList2* list)
    : QvSAX2PrintHandler("UTF-8", false, target, true), m_list(list) {}

I18NString SAX2RenameHandler::Renamed(const I18NString& text) const {
    I18NString copy = text;
    if (m_list && !copy.empty()) m_list->PerformRenames(copy);
    return copy;
}

void SAX2RenameHandler::startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                     const QvXMLAttributes& attrs) {
    if (m_depth++ == 0) return;
    QvXMLAttributesImpl renamed;
    for (int i = 0; i < attrs.getLength(); ++i)
        renamed.push_back(
            {attrs.getURI(i), attrs.getLocalName(i), Renamed(attrs.getQName(i)), attrs.getType(i), Renamed(attrs.getValue(i))});
    QvSAX2PrintHandler::startElement(uri, localName, Renamed(qName), renamed);
}

void SAX2RenameHandler::characters(const I18NString& text) {
    if (m_depth > 0) QvSAX2PrintHandler::characters(Renamed(text));
}

void SAX2RenameHandler::endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) {
    if (--m_depth > 0) QvSAX2PrintHandler::endElement(uri, localName, qName);
}

}  // namespace schema_002_000
