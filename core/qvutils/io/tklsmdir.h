#pragma once

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/text/i18nstring.h"

/** Path helpers. They work on the text alone; no file is looked at. */
class SM_API TklSmDir {
  public:
    /** Adds `more` to `path` behind one separator. An empty `more` changes nothing; an empty `path` becomes `more`. */
    static void joinPath(I18NString& path, const I18NString& more);
    /** Cuts at the last separator. Null outputs are left out. */
    static void splitPath(const I18NString& path, I18NString* directory, I18NString* file);
};

/** Used as a stack object by readers of several files; keeps nothing. */
class SM_API TklSmFile {
  public:
    TklSmFile() = default;
    ~TklSmFile() = default;
};
