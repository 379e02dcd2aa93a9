#pragma once

#include <cstdint>

namespace Diagnostics {

struct BlockRecord;

// A short text for diagnostics that never touches the heap: its characters lie in a block of a
// fixed pool, shared between copies until one of them changes. A text holds at most 255
// characters; whatever goes beyond is dropped without a failure.
class String {
public:
    static constexpr uint32_t maximumLength = 255;

    String();
    String(const char* text);
    String(int value);
    String(long value);
    String(short value);
    String(unsigned int value);
    String(unsigned long value);
    String(unsigned short value);
    String(float value);
    String(double value);
    String(bool value);
    String(const void* pointer);
    String(const String& other);
    ~String();

    String& operator=(const String& other);

    String operator+(const String& other) const;
    String& operator+=(const String& other);
    String& operator+=(const char* text);
    String& operator+=(long value);

    bool operator==(const String& other) const;
    bool operator!=(const String& other) const { return !(*this == other); }

    // The character at index; NUL at or beyond the length.
    char operator[](uint32_t index) const;

    const char* CString() const;
    uint32_t Length() const { return length; }
    bool IsEmpty() const { return length == 0; }
    void Clear();

private:
    void Append(const char* text, uint32_t count);
    void AppendFormatted(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void MakeWritable();
    void Release();

    BlockRecord* block;
    uint32_t length;
};

}
