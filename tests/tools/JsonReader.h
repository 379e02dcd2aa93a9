#pragma once
// A strict reader of JSON text for the tests: a parse error throws, so that "parses" is a check.

#include <string>

#include "tests/tools/JsonValue.h"

namespace OrbelCliTest {

class JsonReader {
public:
    static JsonValue Parse(const std::string& text);

private:
    explicit JsonReader(const std::string& text) : text(text) { }
    JsonValue ReadValue();
    JsonValue ReadObject();
    JsonValue ReadArray();
    std::string ReadString();
    JsonValue ReadNumber();
    void Expect(char c);
    void SkipBlanks();
    char Peek();

    const std::string& text;
    std::size_t position = 0;
};

}
