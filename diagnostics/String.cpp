#include "diagnostics/String.h"

#include "diagnostics/BlockRecord.h"
#include "diagnostics/FixBlockSizeMemoryManager.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace Diagnostics {

namespace {

constexpr uint32_t numberBufferSize = 40;

}

String::String() : block(nullptr), length(0) { }

String::String(const char* text) : String()
{
    if (text != nullptr) {
        Append(text, static_cast<uint32_t>(std::strlen(text)));
    }
}

String::String(int value) : String()
{
    AppendFormatted("%i", value);
}

String::String(long value) : String()
{
    AppendFormatted("%li", value);
}

String::String(short value) : String()
{
    AppendFormatted("%i", static_cast<int>(value));
}

String::String(unsigned int value) : String()
{
    AppendFormatted("%u", value);
}

String::String(unsigned long value) : String()
{
    AppendFormatted("%lu", value);
}

String::String(unsigned short value) : String()
{
    AppendFormatted("%u", static_cast<unsigned int>(value));
}

String::String(float value) : String()
{
    AppendFormatted("%.15g", static_cast<double>(value));
}

String::String(double value) : String()
{
    AppendFormatted("%.15g", value);
}

String::String(bool value) : String(value ? "true" : "false") { }

String::String(const void* pointer) : String()
{
    if (pointer != nullptr) {
        AppendFormatted("0x%lx", static_cast<unsigned long>(reinterpret_cast<uintptr_t>(pointer)));
    }
}

String::String(const String& other) : block(other.block), length(other.length)
{
    if (block != nullptr) {
        block->referenceCount.fetch_add(1, std::memory_order_relaxed);
    }
}

String::~String()
{
    Release();
}

String& String::operator=(const String& other)
{
    if (block != other.block) {
        String copy(other);
        Release();
        block = copy.block;
        length = copy.length;
        copy.block = nullptr;
        copy.length = 0;
    }
    return *this;
}

String String::operator+(const String& other) const
{
    String sum(*this);
    sum += other;
    return sum;
}

String& String::operator+=(const String& other)
{
    // The copy keeps the block of other alive even when it is this text's own block.
    const String addition(other);
    Append(addition.CString(), addition.length);
    return *this;
}

String& String::operator+=(const char* text)
{
    if (text != nullptr) {
        Append(text, static_cast<uint32_t>(std::strlen(text)));
    }
    return *this;
}

String& String::operator+=(long value)
{
    AppendFormatted("%li", value);
    return *this;
}

bool String::operator==(const String& other) const
{
    if (block == other.block) {
        return true;
    }
    return !IsEmpty() && !other.IsEmpty() && std::strcmp(CString(), other.CString()) == 0;
}

char String::operator[](uint32_t index) const
{
    return index < length ? block->data[index] : '\0';
}

const char* String::CString() const
{
    return block != nullptr ? block->data : "";
}

void String::Clear()
{
    Release();
}

void String::Append(const char* text, uint32_t count)
{
    const uint32_t room = maximumLength - length;
    const uint32_t taken = count < room ? count : room;
    if (taken == 0) {
        return;
    }
    MakeWritable();
    std::memcpy(block->data + length, text, taken);
    length += taken;
    block->data[length] = '\0';
}

void String::AppendFormatted(const char* format, ...)
{
    char buffer[numberBufferSize];
    va_list arguments;
    va_start(arguments, format);
    const int written = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    if (written > 0) {
        Append(buffer, static_cast<uint32_t>(std::strlen(buffer)));
    }
}

// Gives this text a block that no other text shares, copying the characters when it was shared.
void String::MakeWritable()
{
    if (block != nullptr && block->referenceCount.load(std::memory_order_acquire) == 1) {
        return;
    }
    BlockRecord* own = FixBlockSizeMemoryManager::AllocateForThisThread();
    if (block != nullptr) {
        std::memcpy(own->data, block->data, length + 1);
    } else {
        own->data[0] = '\0';
    }
    const uint32_t keptLength = length;
    Release();
    block = own;
    length = keptLength;
}

void String::Release()
{
    if (block != nullptr && block->referenceCount.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        block->owner->Free(block);
    }
    block = nullptr;
    length = 0;
}

}
