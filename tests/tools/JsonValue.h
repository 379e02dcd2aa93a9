#pragma once
// A JSON value as the tests read it: null, true or false, a number, a text, an array or an object.

#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace OrbelCliTest {

struct JsonValue {
    using Array = std::vector<JsonValue>;
    using Object = std::map<std::string, JsonValue>;
    std::variant<std::nullptr_t, bool, double, std::string, std::shared_ptr<Array>, std::shared_ptr<Object>> value;

    const JsonValue& operator[](const std::string& key) const;
    const JsonValue& operator[](std::size_t index) const;
    double Number() const;
    const std::string& Text() const;
    std::size_t Size() const;
};

}
