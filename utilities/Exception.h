#pragma once

#include "utilities/String.h"

namespace Diagnostics {
class String;
}

namespace Utilities {

// The root of every failure of the system: a class that says what kind of failure and a text
// that says what happened, nothing else.
class Exception {
public:
    explicit Exception(const String& text);
    explicit Exception(const char* text);
    Exception(const Exception& other);
    Exception& operator=(const Exception& other);
    virtual ~Exception();

    const String* Text() const { return text; }
    Diagnostics::String GetValueString() const;

private:
    String* text;
};

}

// Every class of the family has the same three constructors and adds nothing else.
#define ORBEL_EXCEPTION_CLASS(Name, Base)                                                                              \
    class Name : public Base {                                                                                         \
    public:                                                                                                            \
        explicit Name(const ::Utilities::String& text) : Base(text) { }                                                \
        explicit Name(const char* text) : Base(text) { }                                                               \
        Name(const Name& other) = default;                                                                             \
        Name& operator=(const Name& other) = default;                                                                  \
        ~Name() override;                                                                                              \
    }
