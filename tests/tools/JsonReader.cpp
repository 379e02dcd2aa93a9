#include "tests/tools/JsonReader.h"

#include <cstdlib>
#include <stdexcept>

namespace OrbelCliTest {

JsonValue JsonReader::Parse(const std::string& text)
{
    JsonReader reader(text);
    JsonValue value = reader.ReadValue();
    reader.SkipBlanks();
    if (reader.position != text.size()) {
        throw std::runtime_error("text after the JSON value at " + std::to_string(reader.position));
    }
    return value;
}

void JsonReader::SkipBlanks()
{
    while (position < text.size() && std::string(" \t\r\n").find(text[position]) != std::string::npos) {
        ++position;
    }
}

char JsonReader::Peek()
{
    SkipBlanks();
    if (position >= text.size()) {
        throw std::runtime_error("unexpected end of JSON");
    }
    return text[position];
}

void JsonReader::Expect(char c)
{
    if (Peek() != c) {
        throw std::runtime_error(std::string("expected '") + c + "' at " + std::to_string(position));
    }
    ++position;
}

JsonValue JsonReader::ReadValue()
{
    const char c = Peek();
    if (c == '{') {
        return ReadObject();
    }
    if (c == '[') {
        return ReadArray();
    }
    if (c == '"') {
        return {ReadString()};
    }
    for (const auto& [word, value] :
        {std::pair<std::string, JsonValue>{"null", {nullptr}}, {"true", {true}}, {"false", {false}}}) {
        if (text.compare(position, word.size(), word) == 0) {
            position += word.size();
            return value;
        }
    }
    return ReadNumber();
}

JsonValue JsonReader::ReadObject()
{
    auto object = std::make_shared<JsonValue::Object>();
    Expect('{');
    if (Peek() == '}') {
        ++position;
        return {object};
    }
    do {
        Peek();
        const std::string key = ReadString();
        Expect(':');
        (*object)[key] = ReadValue();
    } while (Peek() == ',' && ++position);
    Expect('}');
    return {object};
}

JsonValue JsonReader::ReadArray()
{
    auto array = std::make_shared<JsonValue::Array>();
    Expect('[');
    if (Peek() == ']') {
        ++position;
        return {array};
    }
    do {
        array->push_back(ReadValue());
    } while (Peek() == ',' && ++position);
    Expect(']');
    return {array};
}

std::string JsonReader::ReadString()
{
    Expect('"');
    std::string result;
    while (position < text.size() && text[position] != '"') {
        char c = text[position++];
        if (static_cast<unsigned char>(c) < 0x20) {
            throw std::runtime_error("control character in a JSON string");
        }
        if (c == '\\') {
            c = text.at(position++);
            if (c == 'u') {
                result += static_cast<char>(std::stoi(text.substr(position, 4), nullptr, 16));
                position += 4;
                continue;
            }
            if (std::string("\"\\/").find(c) == std::string::npos) {
                throw std::runtime_error("unknown escape in a JSON string");
            }
        }
        result += c;
    }
    Expect('"');
    return result;
}

JsonValue JsonReader::ReadNumber()
{
    const std::size_t start = position;
    while (position < text.size() && std::string("-+.eE0123456789").find(text[position]) != std::string::npos) {
        ++position;
    }
    const std::string number = text.substr(start, position - start);
    char* end = nullptr;
    const double value = std::strtod(number.c_str(), &end);
    if (number.empty() || *end != '\0' || number.find(',') != std::string::npos) {
        throw std::runtime_error("not a JSON number at " + std::to_string(start));
    }
    return {value};
}

}
