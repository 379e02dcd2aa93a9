#include "utilities/String.h"

#include "diagnostics/String.h"
#include "utilities/ExceptionOutOfBound.h"

#include <atomic>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace Utilities {

namespace {

// Serial numbers of texts. Atomic so that texts made on several threads never race on it.
std::atomic<uint32_t> stampCounter{0};

constexpr unsigned long lastSafeValue = 429496729UL;
constexpr unsigned long shortLimit = 32767;
constexpr unsigned long longLimit = 2147483647;
constexpr unsigned long unsignedShortLimit = 65535;
constexpr uint32_t doubleWorkAreaSize = 40;
constexpr double exponentThreshold = 15.0;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

ExceptionOutOfBound ConversionFailure(const String& text, const char* suffix)
{
    return ExceptionOutOfBound(text + String(suffix));
}

// The work area of the fixed-point text of a double; it silently stops at its end.
class DoubleWorkArea {
public:
    void Emit(char c)
    {
        if (length < doubleWorkAreaSize - 1) {
            text[length++] = c;
        }
        text[length] = '\0';
    }

    void EmitDigits(double& value, long count)
    {
        for (long i = 0; i < count; ++i) {
            value = (value - std::floor(value)) * 10.0;
            Emit(static_cast<char>('0' + static_cast<int>(value)));
        }
    }

    bool DigitsAreZero() const
    {
        for (uint32_t i = 0; i < length; ++i) {
            if (IsDigit(text[i]) && text[i] != '0') {
                return false;
            }
        }
        return true;
    }

    void DropLeadingSign()
    {
        std::memmove(text, text + 1, length);
        --length;
    }

    void EmitExponent(long exponent)
    {
        Emit('E');
        Emit('+');
        char digits[24];
        const auto result = std::to_chars(digits, digits + sizeof digits, exponent);
        for (const char* digit = digits; digit < result.ptr; ++digit) {
            Emit(*digit);
        }
    }

    const char* Text() const { return text; }
    uint32_t Length() const { return length; }

private:
    char text[doubleWorkAreaSize] = {};
    uint32_t length = 0;
};

}

uint32_t String::NextStamp()
{
    return stampCounter.fetch_add(1, std::memory_order_relaxed);
}

String::String() : buffer(inlineBuffer), length(0), stamp(NextStamp())
{
    inlineBuffer[0] = '\0';
}

String::String(const char* text) : String()
{
    if (text != nullptr) {
        Assign(text, static_cast<uint32_t>(std::strlen(text)));
    }
}

String::String(char c) : String()
{
    if (c != '\0') {
        Assign(&c, 1);
    }
}

String::String(long value) : String()
{
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    Assign(digits, static_cast<uint32_t>(result.ptr - digits));
}

String::String(int value) : String(static_cast<long>(value)) { }

String::String(short value) : String(static_cast<long>(value)) { }

String::String(unsigned short value) : String(static_cast<unsigned long>(value)) { }

String::String(unsigned long value) : String()
{
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    Assign(digits, static_cast<uint32_t>(result.ptr - digits));
}

// Fixed-point text with the given decimals; values of more than 16 integer digits get an
// exponent. Infinite and undefined values, which the digit loop can't take, print as such.
String::String(double value, short decimals, char point) : String()
{
    if (!std::isfinite(value)) {
        char text[doubleWorkAreaSize];
        std::snprintf(text, sizeof text, "%g", value);
        Assign(text, static_cast<uint32_t>(std::strlen(text)));
        return;
    }
    DoubleWorkArea work;
    const bool negative = value < 0.0;
    if (negative) {
        work.Emit('-');
        value = -value;
    }
    const double magnitude = std::trunc(std::log10(value));
    const bool hasExponent = magnitude > exponentThreshold;
    const long exponent = hasExponent ? static_cast<long>(magnitude) : 0;
    if (hasExponent) {
        value *= std::pow(10.0, static_cast<double>(-exponent));
    }
    for (short i = 0; i < decimals; ++i) {
        value *= 10.0;
    }
    value += 0.5;
    for (short i = 0; i < decimals; ++i) {
        value /= 10.0;
    }
    if (value < 1.0) {
        work.Emit('0');
    }
    long integerDigits = 0;
    while (value >= 1.0) {
        value /= 10.0;
        ++integerDigits;
    }
    work.EmitDigits(value, integerDigits);
    if (decimals > 0) {
        work.Emit(point);
        work.EmitDigits(value, decimals);
    }
    if (negative && work.DigitsAreZero()) {
        work.DropLeadingSign();
    }
    if (hasExponent) {
        work.EmitExponent(exponent);
    }
    Assign(work.Text(), work.Length());
}

String::String(const std::string& text) : String()
{
    Assign(text.data(), static_cast<uint32_t>(text.size()));
}

String::String(const String& other) : buffer(inlineBuffer), length(0), stamp(other.stamp)
{
    Assign(other.buffer, other.length);
}

String::String(const char* first, uint32_t firstLength, const char* second, uint32_t secondLength) : String()
{
    ReserveExactly(firstLength + secondLength);
    std::memcpy(buffer, first, firstLength);
    std::memcpy(buffer + firstLength, second, secondLength);
    length = firstLength + secondLength;
    buffer[length] = '\0';
}

String::~String()
{
    ReleaseBuffer();
}

String& String::operator=(const String& other)
{
    if (this != &other) {
        Assign(other.buffer, other.length);
        stamp = other.stamp;
    }
    return *this;
}

std::string String::ToStdString() const
{
    return std::string(buffer, length);
}

Diagnostics::String String::ToDiagnostics() const
{
    return Diagnostics::String(buffer);
}

bool String::operator==(const String& other) const
{
    return length == other.length && std::memcmp(buffer, other.buffer, length) == 0;
}

// Copies share their stamp, so equal stamps settle the question without looking at the bytes.
bool String::operator!=(const String& other) const
{
    if (length != other.length) {
        return true;
    }
    if (stamp == other.stamp) {
        return false;
    }
    return std::memcmp(buffer, other.buffer, length) != 0;
}

bool String::operator<(const String& other) const
{
    return std::strcmp(buffer, other.buffer) < 0;
}

String String::operator+(const String& other) const
{
    if (other.IsEmpty()) {
        return *this;
    }
    if (IsEmpty()) {
        return other;
    }
    return String(buffer, length, other.buffer, other.length);
}

String& String::operator+=(const String& other)
{
    if (other.IsEmpty()) {
        return *this;
    }
    const uint32_t newLength = length + other.length;
    if (newLength < inlineCapacity) {
        std::memcpy(inlineBuffer + length, other.buffer, other.length);
        length = newLength;
        inlineBuffer[length] = '\0';
    } else {
        char* joined = new char[newLength + 1];
        std::memcpy(joined, buffer, length);
        std::memcpy(joined + length, other.buffer, other.length);
        joined[newLength] = '\0';
        ReleaseBuffer();
        buffer = joined;
        length = newLength;
    }
    stamp = NextStamp();
    return *this;
}

long String::Find(char c, unsigned long start) const
{
    const unsigned long from = start > length ? length : start;
    for (unsigned long position = from; position < length; ++position) {
        if (buffer[position] == c) {
            return static_cast<long>(position);
        }
    }
    return -1;
}

long String::FindReverse(char c, long start) const
{
    const long last = static_cast<long>(length) - 1;
    const long from = (start < 0 || start > static_cast<long>(length)) ? last : start;
    for (long position = from; position >= 0; --position) {
        if (buffer[position] == c) {
            return position;
        }
    }
    return -1;
}

long String::Find(const String& pattern, unsigned long start) const
{
    if (pattern.IsEmpty()) {
        return static_cast<long>(start);
    }
    long position = Find(pattern.buffer[0], start);
    while (position >= 0 && static_cast<unsigned long>(position) + pattern.length <= length) {
        if (std::memcmp(buffer + position, pattern.buffer, pattern.length) == 0) {
            return position;
        }
        position = Find(pattern.buffer[0], static_cast<unsigned long>(position) + 1);
    }
    return -1;
}

String String::SubString(unsigned long position, unsigned long count) const
{
    if (position >= length) {
        return String();
    }
    const unsigned long available = length - position;
    const unsigned long taken = (count == 0 || count > available) ? available : count;
    String part;
    part.Assign(buffer + position, static_cast<uint32_t>(taken));
    return part;
}

String String::Token(unsigned long index, char delimiter) const
{
    unsigned long position = 0;
    for (unsigned long skipped = 0; skipped < index; ++skipped) {
        const long found = Find(delimiter, position);
        if (found < 0) {
            throw ExceptionOutOfBound("String empty");
        }
        position = static_cast<unsigned long>(found) + 1;
    }
    const long end = Find(delimiter, position);
    if (end < 0) {
        return SubString(position);
    }
    if (static_cast<unsigned long>(end) == position) {
        return String();
    }
    return SubString(position, static_cast<unsigned long>(end) - position);
}

unsigned long String::TokenCount(char delimiter) const
{
    if (IsEmpty()) {
        return 0;
    }
    unsigned long delimiters = 0;
    for (uint32_t position = 0; position < length; ++position) {
        if (buffer[position] == delimiter) {
            ++delimiters;
        }
    }
    return delimiters + 1;
}

String String::FirstTokens(unsigned long index, char delimiter) const
{
    if (index >= TokenCount(delimiter)) {
        throw ExceptionOutOfBound("Token number too large");
    }
    String joined = Token(0, delimiter);
    for (unsigned long i = 1; i <= index; ++i) {
        joined += String(delimiter);
        joined += Token(i, delimiter);
    }
    return joined;
}

String String::LastTokens(unsigned long index, char delimiter) const
{
    const unsigned long count = TokenCount(delimiter);
    if (index >= count) {
        throw ExceptionOutOfBound("Token number too large");
    }
    String joined = Token(index, delimiter);
    for (unsigned long i = index + 1; i < count; ++i) {
        joined += String(delimiter);
        joined += Token(i, delimiter);
    }
    return joined;
}

// Every occurrence, left to right; an inserted replacement is never searched again, so a
// replacement that holds the pattern itself ends.
void String::Replace(const String& pattern, const String& replacement)
{
    if (pattern.IsEmpty() || IsEmpty()) {
        stamp = NextStamp();
        return;
    }
    std::string result;
    unsigned long position = 0;
    for (long found = Find(pattern, 0); found >= 0; found = Find(pattern, position)) {
        result.append(buffer + position, static_cast<unsigned long>(found) - position);
        result.append(replacement.buffer, replacement.length);
        position = static_cast<unsigned long>(found) + pattern.length;
    }
    result.append(buffer + position, length - position);
    Assign(result.data(), static_cast<uint32_t>(result.size()));
    stamp = NextStamp();
}

String String::ToUpper() const
{
    String upper(*this);
    for (uint32_t i = 0; i < upper.length; ++i) {
        upper.buffer[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(upper.buffer[i])));
    }
    upper.stamp = NextStamp();
    return upper;
}

String String::ToLower() const
{
    String lower(*this);
    for (uint32_t i = 0; i < lower.length; ++i) {
        lower.buffer[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(lower.buffer[i])));
    }
    lower.stamp = NextStamp();
    return lower;
}

short String::ToShort() const
{
    return static_cast<short>(ParseSigned(shortLimit, " is to big for a short."));
}

unsigned short String::ToUnsignedShort() const
{
    const unsigned long value = ParseUnsigned(0);
    if (value > unsignedShortLimit) {
        throw ConversionFailure(*this, " is to big for a short.");
    }
    return static_cast<unsigned short>(value);
}

long String::ToLong() const
{
    return ParseSigned(longLimit, " is to big for a long.");
}

unsigned long String::ToUnsignedLong() const
{
    return ParseUnsigned(0);
}

double String::ToDouble() const
{
    return std::atof(buffer);
}

uint32_t String::Hash(unsigned long modulus) const
{
    uint32_t h = 0;
    for (uint32_t i = 0; i < length; ++i) {
        const auto c = static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(buffer[i])));
        h = static_cast<uint32_t>(static_cast<uint32_t>(h * 64U + c) % modulus);
    }
    return h;
}

// Takes count characters into the inline buffer below 20 characters, else into a heap block of
// exactly the size needed. The text may lie in this object's own buffer.
void String::Assign(const char* text, uint32_t count)
{
    if (count < inlineCapacity) {
        char copy[inlineCapacity];
        std::memcpy(copy, text, count);
        ReleaseBuffer();
        std::memcpy(inlineBuffer, copy, count);
    } else {
        char* block = new char[count + 1];
        std::memcpy(block, text, count);
        ReleaseBuffer();
        buffer = block;
    }
    length = count;
    buffer[length] = '\0';
}

void String::ReserveExactly(uint32_t count)
{
    ReleaseBuffer();
    if (count >= inlineCapacity) {
        buffer = new char[count + 1];
    }
}

void String::ReleaseBuffer()
{
    if (buffer != inlineBuffer) {
        delete[] buffer;
        buffer = inlineBuffer;
    }
}

uint32_t String::SignedStart() const
{
    uint32_t position = 0;
    while (position < length && buffer[position] == ' ') {
        ++position;
    }
    return position;
}

// Blanks and tabs, an optional '+', then digits up to the first non-digit; what follows is
// ignored.
unsigned long String::ParseUnsigned(uint32_t position) const
{
    while (position < length && (buffer[position] == ' ' || buffer[position] == '\t')) {
        ++position;
    }
    if (position < length && buffer[position] == '+') {
        ++position;
    } else if (position >= length || !IsDigit(buffer[position])) {
        throw ConversionFailure(*this, " is not a valid number.");
    }
    unsigned long value = 0;
    for (; position < length && IsDigit(buffer[position]); ++position) {
        const unsigned long digit = static_cast<unsigned long>(buffer[position] - '0');
        if (value > lastSafeValue || (value == lastSafeValue && digit > 5)) {
            throw ConversionFailure(*this, " is to big for an unsigned long.");
        }
        value = value * 10 + digit;
    }
    return value;
}

long String::ParseSigned(unsigned long positiveLimit, const char* tooBigSuffix) const
{
    uint32_t position = SignedStart();
    const bool negative = position < length && buffer[position] == '-';
    if (negative) {
        ++position;
    }
    const unsigned long magnitude = ParseUnsigned(position);
    const unsigned long limit = negative ? positiveLimit + 1 : positiveLimit;
    if (magnitude > limit) {
        throw ConversionFailure(*this, tooBigSuffix);
    }
    return negative ? -static_cast<long>(magnitude) : static_cast<long>(magnitude);
}

}
