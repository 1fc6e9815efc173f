// Named objects that stand in files of their own.
#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/io/tklsmdir.h"
#include "core/qvutils/persist/multifilehelper.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/base/smnamedobject2_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smnamedobject2", "SMNamedObject2"};
const SMLogWords PLACEHOLDER_WORDS = {"smnamedobject", "SMNamedObject2"};
const char* const NOT_A_BREAK_OBJECT =
    "This method should have been implemented in the subclass for any objects that can be MultiFileHelper break objects.";

/** Lends an object the pair of its enclosing document, and takes it back however the write ends. */
class EnclosingDocument {
  public:
    EnclosingDocument(QvContentHandler*& handlerField, QvXMLFormatTarget*& targetField, QvContentHandler* handler,
                      QvXMLFormatTarget& target)
        : m_handlerField(handlerField), m_targetField(targetField) {
        m_handlerField = handler;
        m_targetField = &target;
    }
    ~EnclosingDocument() {
        m_handlerField = nullptr;
        m_targetField = nullptr;
    }
    EnclosingDocument(const EnclosingDocument&) = delete;
    EnclosingDocument& operator=(const EnclosingDocument&) = delete;

  private:
    QvContentHandler*& m_handlerField;
    QvXMLFormatTarget*& m_targetField;
};

}  // namespace

const I18NString& SMNamedObject2::GetFileExtension() {
    SMLog(SM_MISUSE, WORDS, "GetFileExtension", NOT_A_BREAK_OBJECT);
    return EMPTY_QVSTRING;
}

const I18NString& SMNamedObject2::GetPlaceholderTag() const {
    SMLog(SM_MISUSE, WORDS, "GetPlaceHolderTag", NOT_A_BREAK_OBJECT);
    return EMPTY_QVSTRING;
}

int SMNamedObject2::WriteWhat() const {
    return static_cast<int>(SMWriteWhat::file);
}

void SMNamedObject2::WriteXMLEmptyPlaceholder(MultiFileHelper*, QvContentHandler*, QvXMLFormatTarget&) const {
    SMLog(SM_MISUSE, PLACEHOLDER_WORDS, "WriteXMLEmptyPlaceholder", "Method not implemented in this object.");
}

void SMNamedObject2::StartXMLPlaceholder(const I18NString& filename, QvContentHandler* handler) const {
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->id, GetId());
    attrs.push_back(m_tags->name, defaultName);
    attrs.push_back(m_tags->filename, filename);
    attrs.push_back(m_tags->filepath, EMPTY_QVSTRING);  // files stay relative to the project's base directory
    StartElement(handler, GetPlaceholderTag(), attrs);
}

void SMNamedObject2::EndXMLPlaceholder(QvContentHandler* handler) const {
    EndElement(handler, GetPlaceholderTag());
}

void SMNamedObject2::WriteXMLPlaceholder(const I18NString& filename, QvContentHandler* handler) const {
    StartXMLPlaceholder(filename, handler);
    EndXMLPlaceholder(handler);
}

void SMNamedObject2::BreakAndWriteXMLDocument(MultiFileHelper* files, QvContentHandler* handler, QvXMLFormatTarget& target) {
    switch (static_cast<SMWriteWhat>(WriteWhat())) {
    case SMWriteWhat::emptyPlaceholder: WriteXMLEmptyPlaceholder(files, parentHandler ? parentHandler : handler, target); break;
    case SMWriteWhat::file: {
        I18NString path = m_project ? m_project->m_baseDirectory : EMPTY_QVSTRING;
        files->GiveFilePath(defaultName, GetFileExtension(), path);
        I18NString directory, filename;
        TklSmDir::splitPath(path, &directory, &filename);
        QvFileWriter fileWriter(path.c_str());
        StartXMLPlaceholder(filename, handler);
        files->WriteFile(fileWriter, [&](QvXMLFormatTarget& fileTarget) {
            QvSAX2PrintHandler fileHandler("UTF-8", false, fileTarget, false);
            const EnclosingDocument enclosing(parentHandler, parentTarget, handler, target);
            WriteXMLElement(files, &fileHandler, fileTarget);
        });
        EndXMLPlaceholder(handler);
        fileWriter.close();
        break;
    }
    case SMWriteWhat::nothing: break;
    }
}

bool SMNamedObject2::ReadPartFile(const I18NString& filepath, const I18NString& filename, const I18NString& rootTag,
                                  const SMLogWords& words, QvContentHandler& builder) {
    SMPartFiles alone;
    SMPartFiles& files = m_project ? m_project->m_partFiles : alone;
    return files.Read({m_project ? m_project->m_baseDirectory : EMPTY_QVSTRING, filepath, filename, rootTag, words}, builder);
}

}  // namespace schema_002_000
