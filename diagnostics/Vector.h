#pragma once

#include <vector>

#include "diagnostics/ExceptionDiagnostic.h"

namespace Diagnostics {

// The tracer's own growing array, so that it needs no container of the system it traces.
template<class T>
class Vector {
public:
    Vector() { elements.reserve(initialRoom); }

    void Append(const T& element)
    {
        if (elements.size() == elements.capacity()) {
            elements.reserve(elements.capacity() + growth);
        }
        elements.push_back(element);
    }

    unsigned long Size() const { return static_cast<unsigned long>(elements.size()); }

    const T& operator[](unsigned long index) const
    {
        if (index >= elements.size()) {
            throw ExceptionDiagnostic(String("vector index >= vector size"));
        }
        return elements[index];
    }

private:
    static constexpr unsigned long initialRoom = 20;
    static constexpr unsigned long growth = 2;

    std::vector<T> elements;
};

}
