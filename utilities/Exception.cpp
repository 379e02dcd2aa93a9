#include "utilities/Exception.h"

#include "diagnostics/String.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeinfo>

namespace Utilities {

namespace {

Diagnostics::String DemangledName(const std::type_info& type)
{
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return Diagnostics::String(status == 0 ? demangled.get() : type.name());
}

}

Exception::Exception(const String& text) : text(new String(text)) { }

Exception::Exception(const char* text) : text(new String(String(text))) { }

Exception::Exception(const Exception& other) : text(new String(*other.text)) { }

Exception& Exception::operator=(const Exception& other)
{
    if (this != &other) {
        String* copy = new String(*other.text);
        delete text;
        text = copy;
    }
    return *this;
}

Exception::~Exception()
{
    delete text;
}

Diagnostics::String Exception::GetValueString() const
{
    Diagnostics::String value = DemangledName(typeid(*this));
    value += ": ";
    value += text->CString();
    return value;
}

}
