#pragma once
// orbel demo: a tour of the instrument, from the device information to ambient light. With --sim
// the program moves a virtual instrument itself; otherwise it asks the person to.

#include <memory>

#include "tools/Command.h"
#include "tools/Hand.h"
#include "tools/KeyPrompt.h"
#include "tools/MeasurementReport.h"

namespace OrbelCli {

class DemoCommand : public Command {
public:
    std::string Name() const override { return "demo"; }
    std::string Brief() const override { return "a tour of the instrument (make demo runs it on a virtual one)"; }
    std::string Summary() const override;
    std::string Usage() const override { return "orbel demo [--sim PROGRAM] [--plot FILE.svg] [--no-wait]"; }
    std::string Examples() const override;
    std::vector<OptionSpec> Options() const override;
    int Run(const Arguments& arguments, std::ostream& out, std::ostream& messages) override;

private:
    struct Tour {
        Hand& hand;
        const KeyPrompt& prompt;
        std::ostream& out;
    };

    static void Heading(std::ostream& out, int step, const std::string& title);
    // A name and its value, the values of a step aligned.
    static void Line(std::ostream& out, const std::string& name, const std::string& value);
    static void ShowDevice(const Tour& tour);
    static void CalibrateOnTile(const Tour& tour, const std::string& mode);
    static void MeasurePaperWhite(const Tour& tour);
    static MeasurementReport MeasureSamples(const Tour& tour);
    static void ScanStrip(const Tour& tour);
    static void MeasureLight(
        const Tour& tour, const std::string& mode, const std::string& target, const std::string& instruction);
    static void Unplug(const Tour& tour);
};

}
