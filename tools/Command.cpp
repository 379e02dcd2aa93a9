#include "tools/Command.h"

#include <algorithm>

namespace OrbelCli {

std::string Command::Help() const
{
    std::string text = "usage: " + Usage() + "\n\n" + Summary() + "\n\noptions:\n";
    const std::vector<OptionSpec> options = Options();
    std::size_t width = 0;
    for (const OptionSpec& option : options) {
        width = std::max(width, option.name.size() + 1 + option.valueName.size());
    }
    for (const OptionSpec& option : options) {
        const std::string left = option.name + (option.takesValue ? " " + option.valueName : "");
        text += "  " + left + std::string(width - left.size() + 2, ' ') + option.description + "\n";
    }
    return text + "\nexamples:\n" + Examples();
}

}
