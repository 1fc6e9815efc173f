#pragma once

#include <string>
#include <vector>

#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smreferences_002_000.h"

namespace schema_002_000 {

/** All that a model knows of one object, as texts to show. In the lists of objects `objectId` is the address (see SMAddressOf). */
struct SM_API SMObjectSheet {
    /** A name, a description, a screen tip or the like in one language. */
    struct SM_API Text {
        std::string element, locale, text;
    };
    /**
     * A simple element below the object's own: the path of elements to it, "definition/dbQuery/tableType", or to an attribute,
     * "definition/dbQuery/sql@type". Expressions and SQL are one text, in which references stand as what they name.
     */
    struct SM_API Field {
        std::string path, text;
    };
    struct SM_API Property {
        std::string name, type, text;
    };
    struct SM_API Reference {
        std::string field, text;
        /** False for one that dangles. */
        bool resolves = false;
    };
    struct SM_API Referrer {
        SMObjectLine object;
        std::string field;
    };

    SMObjectLine object;
    long version = 0;
    std::vector<Text> texts;
    std::vector<Field> fields;
    /** Without the id and the version. */
    std::vector<Property> properties;
    /** From the project down to the parent. */
    std::vector<SMObjectLine> containers;
    /** What stands directly below and has a sheet of its own, and folders; parts such as prompts and determinants are among the fields. */
    std::vector<SMObjectLine> children;
    /** What the object names, and who names it. */
    std::vector<Reference> references;
    std::vector<Referrer> referrers;
};

/** The sheet of an object of the indexed model. Looks at each reference of the model. */
SM_API SMObjectSheet SMSheetOf(const SMReferenceIndex& index, const SMObjectBase& object);

}  // namespace schema_002_000
