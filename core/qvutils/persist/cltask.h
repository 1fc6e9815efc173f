#pragma once

#include <map>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/text/qvulstring.h"

class CLObjectTask;

/** A task of the content library: which objects an export takes whole. */
class SM_API CLTask {
  public:
    virtual ~CLTask() = default;
    /** Object tasks by the id of their target; the model looks at the keys only. */
    virtual const std::map<QvULString, CLObjectTask*>& GetMapTargetID2ObjectTask() const = 0;
};
