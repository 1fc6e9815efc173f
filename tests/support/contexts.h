#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/qvutils/persist/iohelper.h"

namespace qv {
struct CatalogueTable;
}

namespace smtest {

/** A value as one line: kind and content; a hash as "{KEY S "text", ...}". */
std::string TextOf(const IOParameter& value);
/** The pairs of a hash, one a line: `KEY S "text"`. */
std::vector<std::string> LinesOf(const IOParameter& hash);

/**
 * A persistence context that stores nothing, answers reads with what it was given, writes down every action, and can fail at one.
 * It sends a row for every object, as the context of the host layer does.
 */
class RecordingContext : public IOHelper {
  public:
    struct Action {
        /** "AT_InsertObject SM_FILTER", "AT_ReadSMObject filter", "EndObject". */
        std::string name;
        QvSmartPtr<IOHashParam> params;
    };

    bool DoReadAction(const I18NString& action, const IOHashParam& params, IOArrayParam& results) override;
    bool DoWriteAction(const I18NString& action, const IOHashParam& params) override;
    bool EndObject() override { return Note("EndObject", nullptr); }
    void doReadAddToMiniObjectMap(const IOObject* object) override { noted.push_back(object->GetId().c_str()); }
    void doReadAddToRemainingInfoMap(const QvULString& id, int version, int parentVersion, const QvULString& value) override;
    const RemainingInfoEntry* doWriteLookUpRemainingInfo(const QvULString& id) const override;

    /** The number of the action, from 1, that answers false; 0: none. */
    void FailAt(std::size_t action) { m_failAt = action; }
    const std::vector<Action>& Actions() const { return m_actions; }
    std::vector<std::string> Names() const;
    /** The attributes of the action at a place, one a line. */
    std::vector<std::string> Attributes(std::size_t place) const;

    /** Rows for reads of any kind, in turn: each read takes one list. */
    std::vector<std::vector<QvSmartPtr<IOParameter>>> answers;
    /** Ids of the objects noted as read. */
    std::vector<std::string> noted;
    std::map<std::string, RemainingInfoEntry> records;

  protected:
    /** What a read answers; called for actions that do not fail. */
    virtual void Answer(const std::string& action, const IOHashParam& params, IOArrayParam& results);
    virtual void Store(const std::string&, const IOHashParam&) {}

  private:
    bool Note(std::string name, const IOHashParam* params);

    std::vector<Action> m_actions;
    std::size_t m_failAt = 0;
    std::size_t m_nextAnswer = 0;
};

/**
 * Hands the rows that were written back as rows by tag key, with the help of the storage catalogue. What the catalogue does not
 * know, or knows as another kind, is a fault.
 */
class StoreContext : public RecordingContext {
  public:
    /** The row of an object as a read would give it; null when there is none. */
    QvSmartPtr<IOParameter> RowOf(const std::string& table, const std::string& id) const;
    const std::vector<std::string>& Faults() const { return m_faults; }

  protected:
    void Answer(const std::string& action, const IOHashParam& params, IOArrayParam& results) override;
    void Store(const std::string& action, const IOHashParam& params) override;

  private:
    struct StoredRow {
        std::string id;
        QvSmartPtr<IOParameter> attributes;
    };
    void Check(const std::string& table, const IOParameter& attributes);
    /** A stored row by row key. An update subject's names the kind of query that its definition has, as a repository does. */
    QvSmartPtr<IOParameter> Handed(const qv::CatalogueTable& table, const IOParameter& stored) const;
    std::vector<StoredRow>& TableOf(const std::string& name) { return m_tables[name]; }

    std::map<std::string, std::vector<StoredRow>> m_tables;
    /** Records of remaining info by owner and tag. */
    std::vector<std::pair<std::string, QvSmartPtr<IOParameter>>> m_records;
    std::vector<std::string> m_faults;
};

/** A row given pair by pair. */
class Row {
  public:
    Row() : m_hash(new IOHashParam) {}
    Row& Text(const char* key, const char* value) { return Put(key, new IOQvStringParam(value)); }
    Row& Number(const char* key, long value) { return Put(key, new IOLongParam(value)); }
    Row& Date(const char* key, const char* value) { return Put(key, new QvDateParam(QvDate(value))); }
    Row& Put(const char* key, IOParameter* value) {
        m_hash->insertOrReplace(key, value);
        return *this;
    }
    operator QvSmartPtr<IOParameter>() const { return m_hash.get(); }
    const IOHashParam& operator*() const { return *m_hash; }

  private:
    QvSmartPtr<IOHashParam> m_hash;
};

}  // namespace smtest
