#include "objects/transforms/smrenamelist2_002_000.h"

#include <string>

#include "core/qvutils/diag/tklerrors.h"
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

const SMRenameList2::Record* SMRenameList2::FindRecord(std::string_view nameSpace, std::string_view name, std::string_view item) const {
    constexpr std::string_view any;
    const auto inNamespace = renames.find(nameSpace);
    if (inNamespace == renames.end()) return nullptr;
    const Names& byName = inNamespace->second;
    auto items = byName.find(name);
    const bool named = items != byName.end();
    if (!named) items = byName.find(any);
    if (items == byName.end()) return nullptr;
    auto record = items->second.find(named ? item : any);
    if (named && record == items->second.end()) record = items->second.find(any);
    return record == items->second.end() ? nullptr : &record->second;
}

bool SMRenameList2::PerformRenames(I18NString& nameSpace, I18NString& name, I18NString& item) {
    const Record* record = FindRecord(nameSpace.utf8(), name.utf8(), item.utf8());
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

bool SMRenameList2::PerformRenames(I18NString& text) {
    // most texts need no rename: they are walked once and nothing is copied
    if (!Scan(text.utf8(), nullptr)) return false;
    std::string out;
    Scan(text.utf8(), &out);
    text = I18NString(std::string_view(out));
    return true;
}

bool SMRenameList2::Scan(std::string_view text, std::string* out) const {
    constexpr auto npos = std::string_view::npos;
    bool found = false;
    std::size_t position = 0;
    const auto copyTo = [&](std::size_t end) {
        if (out) out->append(text.substr(position, end - position));
        position = end;
    };
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
        const auto between = [&](std::size_t from, std::size_t end) { return text.substr(from, end - from); };
        const Record* record = FindRecord(between(position, firstEnd), between(second, secondEnd), between(third, thirdEnd));
        found = record != nullptr;  // the last reference decides for the whole text
        if (out) AppendReference(*out, record, between(position, firstEnd), between(second, secondEnd), between(third, thirdEnd));
        position = thirdEnd + 1;

        std::size_t end = thirdEnd;
        while (end != npos && IsNextPart(text, end)) end = findClose(end + NEXT_PART.size());
        if (end == npos) break;
        copyTo(end + 1);
    }
    copyTo(text.size());
    return found;
}

void SMRenameList2::AppendReference(std::string& out, const Record* record, std::string_view nameSpace, std::string_view name,
                                    std::string_view item) {
    if (record) {
        nameSpace = record->newNamespace.utf8();  // also when empty
        if (!record->newName.empty()) name = record->newName.utf8();
        if (!record->newItem.empty()) item = record->newItem.utf8();
    }
    out.append("[").append(nameSpace).append(NEXT_PART).append(name).append(NEXT_PART).append(item).append("]");
}

void SMRenameList2::RenameDocument(TklByteBuffer& xml, bool ownRoot) {
    xml.reset();
    QvByteBufferWriter writer(xml);
    SAX2RenameHandler handler(writer, this, ownRoot);
    if (!parser) parser = std::make_unique<QvSAX2Parser>();
    struct HandlerScope {
        QvSAX2Parser& parser;
        ~HandlerScope() { parser.setContentHandler(nullptr); }
    };
    const HandlerScope scope{*parser};
    parser->setContentHandler(&handler);
    try {
        parser->parse(m_document);
    } catch (...) {
        xml.reset();  // half an element would spoil every document that it is written to
        throw;
    }
    xml.shrink();
}

void SMRenameList2::PerformRenamesEscaped(TklByteBuffer& xml) {
    // nearly every fragment is one element, which needs no root of ours around it
    const std::string_view text = xml.view();
    if (text.size() > 1 && text[0] == '<' && text[1] != '?' && text[1] != '!' && text.back() == '>') {
        std::swap(m_document, xml);
        try {
            RenameDocument(xml, false);
            return;
        } catch (const TklRuntimeError&) {
            std::swap(m_document, xml);  // several elements, or none that parses
        }
    }
    m_document.reset();
    m_document << "<dummy>" << xml << "</dummy>";
    RenameDocument(xml, true);
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

I18NString SMRenameList2::GenerateUniqueNamespaceName(const I18NString& name, const SMNamespaceMap& existing, SMTakenNames& taken) {
    I18NString base, result;
    long suffix = 0;
    _SplitNameAndSuffix(name, base, suffix);
    taken[base].FirstFree(suffix, [&](long number) {
        result = base;
        _AddSuffixToName(result, number);
        return result.empty() || existing.find(result) != existing.end();
    });
    return result;
}

// ---- XML fragments

SAX2RenameHandler::SAX2RenameHandler(QvXMLFormatTarget& target, SMRenameList2* list, bool ownRoot)
    : QvSAX2PrintHandler("UTF-8", false, target, true), m_list(list), m_depth(ownRoot ? 0 : 1) {}

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
