#include "tools/SimHand.h"

#include "orbel.h"
#include "tools/CliError.h"
#include "tools/platform/ChildProcess.h"

namespace OrbelCli {

SimHand::SimHand(std::string program) : program(std::move(program)) { }

void SimHand::Place(const std::string& target)
{
    Run({"place", target});
}

void SimHand::PrepareStrip(const std::string& spec)
{
    Run({"strip", spec});
}

void SimHand::PressKey()
{
    Run({"press"});
}

void SimHand::Unplug()
{
    Run({"unplug"});
}

// The control program's own output would only clutter the report; its errors stay visible.
void SimHand::Run(const std::vector<std::string>& arguments) const
{
    if (ChildProcess::Run(program, arguments) != 0) {
        throw CliError(OB_UnknownError, "the virtual instrument refused: " + program + " " + arguments.front());
    }
}

}
