#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>

#include "utilities/ExceptionOutOfBound.h"
#include "utilities/VectorIterator.h"

namespace Utilities {

// An array whose size is fixed when it is built; it changes only by assignment from another
// Vector. Elements of class type are default-constructed, plain numbers are left uninitialised.
template<class T>
class Vector {
public:
    explicit Vector(unsigned long size = 100)
        : size(static_cast<uint32_t>(size)), elements(size == 0 ? nullptr : new T[size])
    {
    }

    Vector(const Vector& other) : size(other.size), elements(CopyOf(other)) { }

    Vector& operator=(const Vector& other)
    {
        if (this == &other) {
            return *this;
        }
        T* copy = CopyOf(other);
        delete[] elements;
        elements = copy;
        size = other.size;
        return *this;
    }

    virtual ~Vector() { delete[] elements; }

    unsigned long Size() const { return size; }

    T& operator[](unsigned long index)
    {
        CheckIndex(index);
        return elements[index];
    }

    const T& operator[](unsigned long index) const
    {
        CheckIndex(index);
        return elements[index];
    }

    VectorIterator<T> Begin() { return VectorIterator<T>(0, *this); }
    VectorIterator<const T> Begin() const { return VectorIterator<const T>(0, *this); }

    bool operator==(const Vector& other) const
    {
        if (this == &other) {
            return true;
        }
        return size == other.size && std::equal(elements, elements + size, other.elements);
    }

private:
    void CheckIndex(unsigned long index) const
    {
        if (index >= size) {
            throw ExceptionOutOfBound("vector index >= vector size");
        }
    }

    // The new array is complete before anything of the old one is given up.
    static T* CopyOf(const Vector& source)
    {
        if (source.size == 0) {
            return nullptr;
        }
        std::unique_ptr<T[]> copy(new T[source.size]);
        std::copy(source.elements, source.elements + source.size, copy.get());
        return copy.release();
    }

    uint32_t size;
    T* elements;
};

}
