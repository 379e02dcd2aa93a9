#include "tools/Arguments.h"

#include <algorithm>

#include "tools/CliError.h"
#include "tools/DecimalText.h"

namespace OrbelCli {

namespace {

const OptionSpec* Find(const std::vector<OptionSpec>& known, const std::string& name)
{
    const auto found = std::find_if(known.begin(), known.end(), [&](const OptionSpec& o) { return o.name == name; });
    return found == known.end() ? nullptr : &*found;
}

}

Arguments::Arguments(
    const std::string& command, const std::vector<std::string>& words, const std::vector<OptionSpec>& known)
    : command(command)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word.rfind("--", 0) != 0) {
            positional.push_back(word);
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        const OptionSpec* spec = Find(known, name);
        if (!spec) {
            throw CliError::Usage("'" + command + "' has no option " + name + " (see orbel " + command + " --help)");
        }
        if (!spec->takesValue) {
            if (equals != std::string::npos) {
                throw CliError::Usage("option " + name + " takes no value");
            }
            options[name] = "";
        } else if (equals != std::string::npos) {
            options[name] = word.substr(equals + 1);
        } else if (i + 1 < words.size()) {
            options[name] = words[++i];
        } else {
            throw CliError::Usage("option " + name + " needs a value: " + name + " " + spec->valueName);
        }
    }
}

bool Arguments::Has(const std::string& name) const
{
    return options.count(name) != 0;
}

std::optional<std::string> Arguments::Get(const std::string& name) const
{
    const auto found = options.find(name);
    return found == options.end() ? std::nullopt : std::optional<std::string>(found->second);
}

std::string Arguments::Value(const std::string& name, const std::string& fallback) const
{
    return Get(name).value_or(fallback);
}

long Arguments::Whole(const std::string& name, long fallback, long lowest, long highest) const
{
    const auto text = Get(name);
    if (!text) {
        return fallback;
    }
    const auto value = DecimalText::ParseWhole(*text);
    if (!value || *value < lowest || *value > highest) {
        throw CliError::Usage(name + " takes a whole number from " + std::to_string(lowest) + " to " +
            std::to_string(highest) + ", not '" + *text + "'");
    }
    return *value;
}

std::string Arguments::Choice(
    const std::string& name, const std::string& fallback, const std::vector<std::string>& words) const
{
    std::string value = Value(name, fallback);
    if (std::find(words.begin(), words.end(), value) != words.end()) {
        return value;
    }
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : ", ") + word;
    }
    throw CliError::Usage(name + " takes one of " + list + ", not '" + value + "'");
}

}
