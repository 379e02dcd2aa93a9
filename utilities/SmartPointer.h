#pragma once

#include <atomic>
#include <concepts>
#include <cstdint>
#include <utility>

#include "utilities/ExceptionNullpointer.h"
#include "utilities/ReferenceManager.h"

namespace Utilities {

// Shared ownership of an object through a counter in a block of its own. Every SmartPointer
// of one object shares that block, also after a cast to another type; the last one deletes
// the object, then the block. The count is atomic, so copies of a shared SmartPointer may be
// made and dropped on any thread.
template<class T>
class SmartPointer : public ReferenceManager {
public:
    using Counter = std::atomic<uint32_t>;

    SmartPointer() : count(nullptr), pointer(nullptr) { }

    // Takes ownership; a raw pointer is handed to a SmartPointer exactly once.
    SmartPointer(T* object) : count(object == nullptr ? nullptr : new Counter(1)), pointer(object) { }

    SmartPointer(const SmartPointer& other) : count(other.count), pointer(other.pointer) { Share(); }

    // Takes over the share of other, which becomes null, without touching the count.
    SmartPointer(SmartPointer&& other) noexcept
        : count(std::exchange(other.count, nullptr)), pointer(std::exchange(other.pointer, nullptr))
    {
    }

    template<class U>
    requires std::convertible_to<U*, T*> SmartPointer(const SmartPointer<U>& other)
        : count(other.count), pointer(other.pointer)
    {
        Share();
    }

    // Shares the count of source for castPointer, which is source's object seen as a T.
    template<class U>
    SmartPointer(T* castPointer, const SmartPointer<U>& source)
        : count(castPointer == nullptr ? nullptr : source.count), pointer(count == nullptr ? nullptr : castPointer)
    {
        Share();
    }

    SmartPointer& operator=(const SmartPointer& other)
    {
        if (this != &other) {
            SmartPointer held(other);
            std::swap(count, held.count);
            std::swap(pointer, held.pointer);
        }
        return *this;
    }

    SmartPointer& operator=(SmartPointer&& other) noexcept
    {
        SmartPointer held(std::move(other));
        std::swap(count, held.count);
        std::swap(pointer, held.pointer);
        return *this;
    }

    ~SmartPointer() override { Release(); }

    void Anchor() override { }

    T* operator->() const
    {
        if (pointer == nullptr) {
            throw ExceptionNullpointer("Failed to access to nullpointer.");
        }
        return pointer;
    }

    T& operator*() const
    {
        if (pointer == nullptr) {
            throw ExceptionNullpointer("Failed to dereference nullpointer.");
        }
        return *pointer;
    }

    bool IsNull() const { return pointer == nullptr; }
    // How many SmartPointers share the object; 0 for a null one.
    uint32_t UseCount() const { return count == nullptr ? 0 : count->load(std::memory_order_relaxed); }

private:
    template<class>
    friend class SmartPointer;

    void Share()
    {
        if (count != nullptr) {
            count->fetch_add(1, std::memory_order_relaxed);
        }
    }

    void Release()
    {
        if (count != nullptr && count->fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete pointer;
            delete count;
        }
    }

    Counter* count;
    T* pointer;
};

// The same object as a SmartPointer<T>, sharing the count; null when source is null or its
// object is no T.
template<class T, class U>
SmartPointer<T> SmartPointerCast(const SmartPointer<U>& source)
{
    if (source.IsNull()) {
        return SmartPointer<T>();
    }
    return SmartPointer<T>(dynamic_cast<T*>(&*source), source);
}

}
