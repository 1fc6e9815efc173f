#pragma once

#include "objects/base/smnestedobject2_002_000.h"
#include "objects/base/smobjectbase_002_000.h"

namespace smtest {

/** The least that a class of the library has to give, over any of its bases: the operations of the base stand bare. */
template <class Base>
class Plain : public Base {
  public:
    explicit Plain(schema_002_000::SMProject2* project) : Base(nullptr, project) {}
    template <class Owner>
    Plain(schema_002_000::SMProject2* project, const Owner& owner) : Base(owner, project) {}

    bool read(IOHelper&) override { return true; }
    I18NString GetVersionCol() const override { return "PLAIN_VERSION"; }
    I18NString GetIdCol() const override { return "PLAIN_ID"; }
    I18NString GetParentVersionCol() const override { return "OWNER_VERSION"; }
    I18NString GetParentIdCol() const override { return "OWNER_ID"; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override { return this->InsertRow(helper, Table()); }
    bool write_next(IOHelper&) override { return true; }
    schema_002_000::SMEnum_xmltag::Enum GetSMType() const override { return type; }
    void WriteXMLElement(IOHelper*, QvContentHandler* handler, QvXMLFormatTarget& target) const override {
        this->WriteXMLElement(handler, target);
    }
    using Base::WriteXMLElement;

    schema_002_000::SMEnum_xmltag::Enum type = schema_002_000::SMEnum_xmltag::Enum::filter;

  private:
    static const schema_002_000::SMTable& Table() {
        static const schema_002_000::SMTable table = {"SM_PLAIN", "PLAIN_ID", "PLAIN_VERSION", "OWNER_ID", "OWNER_VERSION"};
        return table;
    }
};

using PlainObject = Plain<schema_002_000::SMObjectBase>;
using PlainNamed = Plain<schema_002_000::SMNamedObject2>;
using PlainNameDesc = Plain<schema_002_000::SMNameDescObject2>;
using PlainNested = Plain<schema_002_000::SMNestedObject2>;

/** An object of the host that is no model object. */
class HostObject : public IOObject {
  public:
    explicit HostObject(IOObject* owner = nullptr) : IOObject(owner, false) {}
    void constructFromIOParameter(const IOParameter&) override {}
    bool read(IOHelper&) override { return true; }
    I18NString GetVersionCol() const override { return {}; }
    I18NString GetIdCol() const override { return {}; }
    I18NString GetParentVersionCol() const override { return {}; }
    I18NString GetParentIdCol() const override { return {}; }
    int GetModelType() override { return 0; }
    void getPath(I18NString&) const override {}
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper&) override { return true; }
    bool write_next(IOHelper&) override { return true; }
};

}  // namespace smtest
