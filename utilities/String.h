#pragma once

#include <cstdint>
#include <string>

namespace Diagnostics {
class String;
}

namespace Utilities {

// The system's text: 8-bit characters, texts below 20 characters inside the object, and a
// serial stamp that copies share, so that inequality of copies is known without a comparison.
class String {
public:
    String();
    String(const char* text);
    String(char c);
    String(long value);
    String(int value);
    String(short value);
    String(unsigned short value);
    String(unsigned long value);
    String(double value, short decimals, char point);
    String(const std::string& text);
    String(const String& other);
    ~String();

    String& operator=(const String& other);

    uint32_t Length() const { return length; }
    const char* CString() const { return buffer; }
    bool IsEmpty() const { return length == 0; }
    uint32_t Stamp() const { return stamp; }
    std::string ToStdString() const;
    Diagnostics::String ToDiagnostics() const;

    bool operator==(const String& other) const;
    bool operator!=(const String& other) const;
    bool operator<(const String& other) const;
    String operator+(const String& other) const;
    String& operator+=(const String& other);

    long Find(char c, unsigned long start = 0) const;
    long FindReverse(char c, long start = -1) const;
    long Find(const String& pattern, unsigned long start = 0) const;
    String SubString(unsigned long position, unsigned long count = 0) const;
    String Token(unsigned long index, char delimiter) const;
    unsigned long TokenCount(char delimiter) const;
    String FirstTokens(unsigned long index, char delimiter) const;
    String LastTokens(unsigned long index, char delimiter) const;
    void Replace(const String& pattern, const String& replacement);
    String ToUpper() const;
    String ToLower() const;

    short ToShort() const;
    unsigned short ToUnsignedShort() const;
    long ToLong() const;
    unsigned long ToUnsignedLong() const;
    double ToDouble() const;

    uint32_t Hash(unsigned long modulus) const;

private:
    static constexpr uint32_t inlineCapacity = 20;

    String(const char* first, uint32_t firstLength, const char* second, uint32_t secondLength);

    static uint32_t NextStamp();
    void Assign(const char* text, uint32_t count);
    void ReserveExactly(uint32_t count);
    void ReleaseBuffer();
    uint32_t SignedStart() const;
    unsigned long ParseUnsigned(uint32_t position) const;
    long ParseSigned(unsigned long positiveLimit, const char* tooBigSuffix) const;

    char* buffer;
    char inlineBuffer[inlineCapacity];
    uint32_t length;
    uint32_t stamp;
};

}
