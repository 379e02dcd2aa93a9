#pragma once
// What every measuring subcommand shares: its output options (--format, --plot) and its prompt
// options (--no-wait, --wait).

#include <memory>
#include <ostream>
#include <vector>

#include "tools/Arguments.h"
#include "tools/Hand.h"
#include "tools/KeyPrompt.h"
#include "tools/MeasurementReport.h"

namespace OrbelCli {

class ReportOutput {
public:
    static constexpr int DefaultWaitSeconds = 30;

    static std::vector<OptionSpec> PromptOptions();
    // A command's own options followed by the output and prompt options.
    static std::vector<OptionSpec> WithOutputOptions(std::vector<OptionSpec> own);
    // Refuses a wrong --format before anything is measured.
    static void Validate(const Arguments& arguments);
    // Writes the report in the chosen format to out and the plot, if asked for, to its file.
    static void Emit(
        const MeasurementReport& report, const Arguments& arguments, std::ostream& out, std::ostream& messages);
    static void Plot(const MeasurementReport& report, const std::string& path, std::ostream& messages);
    static KeyPrompt Prompt(const Arguments& arguments, std::ostream& messages, Hand& hand);
    // The emission values of the last sample as notes: luminance and colour temperature.
    static void AddLightNotes(MeasurementReport& report);

private:
    static std::vector<OptionSpec> FormatOptions();
};

}
