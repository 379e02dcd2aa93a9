#include "tools/InfoCommand.h"

#include <algorithm>

#include "tools/DeviceSurvey.h"
#include "tools/Instrument.h"
#include "tools/JsonFormatter.h"

namespace OrbelCli {

std::string InfoCommand::Summary() const
{
    return "Shows the version of the module and what the instrument tells about itself: serial number, time\n"
           "and number of measurements since the last calibration, the filter fitted, the measurement mode.\n"
           "--devices lists instead every instrument attached, USB ones with the configured ids first, each\n"
           "with its path and whether it can be opened now; if not, why and what to do.";
}

std::string InfoCommand::Examples() const
{
    return "  orbel info\n  orbel info --format json\n  orbel info --devices\n";
}

std::vector<OptionSpec> InfoCommand::Options() const
{
    return {{"--format", true, "FORMAT", "table (default), csv or json"},
        {"--devices", false, "", "every instrument attached, and whether it can be opened"}};
}

std::vector<std::pair<std::string, std::string>> InfoCommand::Collect()
{
    std::vector<std::pair<std::string, std::string>> answers;
    for (const char* key : {"Version", "Connection", "SerialNumber", "LastCalibrationTime", "LastCalibrationCounter",
             "PhysicalFilter", "MeasurementMode"}) {
        answers.emplace_back(key, Instrument::Info(key));
    }
    return answers;
}

int InfoCommand::Run(const Arguments& arguments, std::ostream& out, std::ostream&)
{
    const std::string format = arguments.Choice("--format", "table", {"table", "csv", "json"});
    // A trial open must come before the module holds an instrument itself.
    const bool devices = arguments.Has("--devices");
    if (!devices) {
        Instrument::RequireConnection();
    }
    const auto answers = devices ? DeviceSurvey::Take() : Collect();
    if (format == "json") {
        out << "{";
        for (std::size_t i = 0; i < answers.size(); ++i) {
            out << (i ? ", " : "") << JsonFormatter::Quoted(answers[i].first) << ": "
                << JsonFormatter::Quoted(answers[i].second);
        }
        out << "}\n";
    } else if (format == "csv") {
        out << "key,value\n";
        for (const auto& [key, value] : answers) {
            out << key << ',' << value << '\n';
        }
    } else {
        std::size_t width = 0;
        for (const auto& answer : answers) {
            width = std::max(width, answer.first.size());
        }
        for (const auto& [key, value] : answers) {
            out << "  " << key << std::string(width - key.size() + 2, ' ') << value << '\n';
        }
    }
    return 0;
}

}
