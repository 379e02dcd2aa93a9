#include "tests/tools/JsonValue.h"

namespace OrbelCliTest {

const JsonValue& JsonValue::operator[](const std::string& key) const
{
    return std::get<std::shared_ptr<Object>>(value)->at(key);
}

const JsonValue& JsonValue::operator[](std::size_t index) const
{
    return std::get<std::shared_ptr<Array>>(value)->at(index);
}

double JsonValue::Number() const
{
    return std::get<double>(value);
}

const std::string& JsonValue::Text() const
{
    return std::get<std::string>(value);
}

std::size_t JsonValue::Size() const
{
    if (const auto* array = std::get_if<std::shared_ptr<Array>>(&value)) {
        return (*array)->size();
    }
    return std::get<std::shared_ptr<Object>>(value)->size();
}

}
