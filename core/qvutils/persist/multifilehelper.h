#pragma once

#include <set>

#include "core/qvutils/persist/iohelper.h"

/** Says which elements of a document go to files of their own, and names the files. */
class SM_API MultiFileHelper : public IOHelper {
  public:
    /** Elements of these tags ("namespace", "package") go to files of their own. */
    explicit MultiFileHelper(std::set<QvULString> separateTags = {});
    int GetHelperKind() const override { return 3; }
    virtual bool IsSeparateFile(const I18NString& tagName) const;
    /**
     * Makes the path of an object's file. `path` holds the directory when called and the path on return. The file name is made
     * from the object's name injectively, so that two names never share a file, also where case is not kept: what a file
     * system does not take is written as %XX, and an over-long name is cut and ends with a digest of the whole.
     */
    static void MakeFilePath(const I18NString& name, const I18NString& extension, I18NString& path);

  private:
    std::set<QvULString> m_separateTags;
};
