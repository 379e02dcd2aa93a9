#pragma once

// Replaces the global allocation functions of a test program so that a test can count the heap
// allocations of its own thread. Include it in exactly one source file of a test program. The
// replacements only count and otherwise behave as the library's own, so other tests of the
// program don't notice them.

#include <cstddef>
#include <cstdlib>
#include <new>

namespace HeapAllocationCounter {

inline thread_local std::size_t allocationsOfThisThread = 0;

inline void* Allocate(std::size_t size) noexcept
{
    ++allocationsOfThisThread;
    return std::malloc(size == 0 ? 1 : size);
}

inline void* AllocateOrThrow(std::size_t size)
{
    void* memory = Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

// Out of line, so that the compiler doesn't take the free of memory from operator new for a
// mismatch.
[[gnu::noinline]] inline void Release(void* memory) noexcept
{
    std::free(memory);
}

// The allocations that action makes on the calling thread.
template<class Action>
std::size_t AllocationsOf(Action action)
{
    const std::size_t before = allocationsOfThisThread;
    action();
    return allocationsOfThisThread - before;
}

}

void* operator new(std::size_t size)
{
    return HeapAllocationCounter::AllocateOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return HeapAllocationCounter::AllocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return HeapAllocationCounter::Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return HeapAllocationCounter::Allocate(size);
}

void operator delete(void* memory) noexcept
{
    HeapAllocationCounter::Release(memory);
}

void operator delete[](void* memory) noexcept
{
    HeapAllocationCounter::Release(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    HeapAllocationCounter::Release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    HeapAllocationCounter::Release(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    HeapAllocationCounter::Release(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    HeapAllocationCounter::Release(memory);
}
