#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "objects/project/smproject2_002_000.h"
#include "tests/support/values.h"

namespace smtest {

/**
 * One class of the model, as the tests that go over all of them need it. A class joins with a file of its own,
 * tests/support/classes/<class>_class.cpp, which holds one `Register`.
 */
struct ModelClass {
    using Object = QvSmartPtr<schema_002_000::SMObjectBase>;

    std::string name;
    /** An object without content at its place in a project. */
    std::function<Object(schema_002_000::SMProject2&)> make;
    /** Sets every field that the class has, and adds one or two children of each kind. */
    std::function<void(schema_002_000::SMObjectBase&, Values&)> fill;
    /** Reads the object's element as its parent does, and gives the object made. */
    std::function<Object(schema_002_000::SMProject2&, const std::string& element)> read;
    /** False for a class whose element tells what its reader does not take. */
    bool readsWhatItWrites = true;

    friend std::ostream& operator<<(std::ostream& out, const ModelClass& entry) { return out << entry.name; }

    /** A filled object at its place in a project. */
    Object Filled(schema_002_000::SMProject2& project, Values values = Values()) const {
        Object object = make(project);
        fill(*object, values);
        return object;
    }
};

/** All classes, by name. */
const std::vector<ModelClass>& ModelClasses();
void AddModelClass(ModelClass entry);

/** The root namespace of a project; made, with the id "root", if there is none. */
schema_002_000::SMNamespace2* RootOf(schema_002_000::SMProject2& project);

template <class T>
class Register {
  public:
    Register(const char* name, T* (*make)(schema_002_000::SMProject2&), void (*fill)(T&, Values&),
             T* (*read)(schema_002_000::SMProject2&, const std::string&), bool readsWhatItWrites = true) {
        AddModelClass({name, [make](schema_002_000::SMProject2& project) { return make(project); },
                       [fill](schema_002_000::SMObjectBase& object, Values& values) { fill(static_cast<T&>(object), values); },
                       [read](schema_002_000::SMProject2& project, const std::string& element) { return read(project, element); },
                       readsWhatItWrites});
    }
};

}  // namespace smtest
