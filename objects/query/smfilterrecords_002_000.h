#pragma once

#include <map>
#include <memory>
#include <vector>

#include "objects/base/smenums_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

/** A filter that previews of data use. Text is the class's text type. */
template <class Text>
struct SMPreviewFilterRecord {
    Text refobj;
    Text displayName;
    QvSmartPtr<SMXMLObject2> expression;
};

/** A filter for the users that a security object stands for. */
template <class Text>
struct SMSecurityFilterRecord {
    SMEnum_securityObjectType::Enum type = SMEnum_securityObjectType::Enum(-1);
    Text displayPath;
    Text cmSearchPath;
    Text basedOnCmSearchPath;
    Text refobj;
    Text displayName;
    QvSmartPtr<SMXMLObject2> expression;
};

/** The preview and security filters of a subject or calculation. One pointer wide while there are none. */
template <class Text>
class SM_API SMFilterRecords {
  public:
    using Preview = SMPreviewFilterRecord<Text>;
    using Security = SMSecurityFilterRecord<Text>;

    const std::vector<Preview>& Previews() const noexcept { return m_block ? m_block->previews : Empty().previews; }
    const std::vector<Security>& Securities() const noexcept { return m_block ? m_block->securities : Empty().securities; }
    std::vector<Preview>& EditPreviews() { return Edit().previews; }
    std::vector<Security>& EditSecurities() { return Edit().securities; }

    /** The element "previewFilters" or "securityFilters"; nothing when there is no filter of the kind. */
    void WritePreviews(QvContentHandler* handler, QvXMLFormatTarget& target) const;
    void WriteSecurities(QvContentHandler* handler, QvXMLFormatTarget& target) const;
    I18NString PreviewsToString() const;
    I18NString SecuritiesToString() const;

    void RegenerateIds(std::map<QvULString, QvULString>& idMap);
    void RenameObjects(SMRenameList2& list);

  private:
    struct Block {
        std::vector<Preview> previews;
        std::vector<Security> securities;
    };
    static const Block& Empty() {
        static const Block none;
        return none;
    }
    Block& Edit() {
        if (!m_block) m_block = std::make_unique<Block>();
        return *m_block;
    }
    std::unique_ptr<Block> m_block;
};

extern template class SMFilterRecords<I18NString>;
extern template class SMFilterRecords<QvULString>;

/** What a builder has to do with a start tag that it has offered to the reader of filters. */
enum class SMFilterStep { notMine, done, collect, keep };

/**
 * Reads filters: the part of a builder that knows inside which of the two lists it stands. Places are kept as indexes, since the
 * lists grow; a value that comes before any record is dropped.
 */
template <class Text>
class SM_API SMFilterReader {
  public:
    /** The records are borrowed. */
    explicit SMFilterReader(SMFilterRecords<Text>& records) : m_records(records) {}
    /** `keep`: take the element whole and give it to SetExpression; `collect`: gather its text. */
    SMFilterStep Start(SMEnum_xmltag::Enum tag, const QvXMLAttributes& attrs);
    void SetExpression(const QvSmartPtr<SMXMLObject2>& expression);
    /** False for an end tag that is not of a filter, or of none of those that are open. */
    bool End(SMEnum_xmltag::Enum tag, const I18NString& text);

  private:
    enum class State { outside, previews, securities, securityObject };
    typename SMFilterRecords<Text>::Preview* CurrentPreview();
    typename SMFilterRecords<Text>::Security* CurrentSecurity();
    bool SetText(Text SMPreviewFilterRecord<Text>::*inPreview, Text SMSecurityFilterRecord<Text>::*inSecurity, const I18NString& text);

    SMFilterRecords<Text>& m_records;
    State m_state = State::outside;
};

extern template class SMFilterReader<I18NString>;
extern template class SMFilterReader<QvULString>;

}  // namespace schema_002_000
