#pragma once

#include <cstdint>
#include <type_traits>

#include "utilities/ExceptionOutOfBound.h"

namespace Utilities {

template<class T>
class Vector;

// Walks a Vector by position. The position of all ones stands before the first element; an
// iterator on a const Vector is a VectorIterator<const T>.
template<class T>
class VectorIterator {
    using Element = std::remove_const_t<T>;
    using VectorType = std::conditional_t<std::is_const_v<T>, const Vector<Element>, Vector<Element>>;

public:
    static constexpr uint32_t beforeFirst = 0xFFFFFFFFu;

    // A position at or past the end is pulled back to the last element; on an empty Vector
    // that is the position before the first one.
    VectorIterator(unsigned long position, VectorType& vector)
        : position(static_cast<uint32_t>(position)), vector(&vector)
    {
        uint32_t size = static_cast<uint32_t>(vector.Size());
        if (this->position >= size) {
            this->position = size - 1;
        }
    }

    virtual ~VectorIterator() = default;

    VectorIterator(const VectorIterator&) = default;
    VectorIterator& operator=(const VectorIterator&) = default;

    VectorIterator& operator++()
    {
        if (position < vector->Size() || position == beforeFirst) {
            ++position;
        }
        return *this;
    }

    VectorIterator& operator--()
    {
        if (position != beforeFirst) {
            --position;
        }
        return *this;
    }

    bool IsValid() const { return position < vector->Size() && position != beforeFirst; }

    T& Current() const
    {
        if (vector->Size() == 0) {
            throw ExceptionOutOfBound("MapIterator is not valid");
        }
        return (*vector)[position];
    }

    unsigned long Position() const { return position; }

private:
    uint32_t position;
    VectorType* vector;
};

}
