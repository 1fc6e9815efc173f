#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>

#include "core/qvutils/persist/iohelper.h"

class QvFileWriter;
class QvXMLFormatTarget;

/** Says which elements of a document go to files of their own, and names the files. */
class SM_API MultiFileHelper : public IOHelper {
  public:
    /** Elements of these tags ("namespace", "package") go to files of their own. */
    explicit MultiFileHelper(std::set<QvULString> separateTags = {});
    int GetHelperKind() const override { return 3; }
    virtual bool IsSeparateFile(const I18NString& tagName) const;
    /** Told by the project when it begins to write a document: names may be given anew. */
    virtual void BeginDocument();
    /**
     * Makes the path of an object's file. `path` holds the directory when called and the path on return. The file name is the one
     * that qv::ObjectFileName makes.
     */
    static void MakeFilePath(const I18NString& name, const I18NString& extension, I18NString& path);
    /** The same in a document that is being written: an object whose name had a file in it already gets one with a number. */
    virtual void GiveFilePath(const I18NString& name, const I18NString& extension, I18NString& path);
    /** Has an object print its file: `print` is called once, with the target that takes the bytes. */
    virtual void WriteFile(QvFileWriter& file, const std::function<void(QvXMLFormatTarget&)>& print);

  private:
    std::set<QvULString> m_separateTags;
    /** How many files of this document have a path, by the path of the first. */
    std::map<std::string, std::size_t> m_given;
};
