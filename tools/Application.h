#pragma once
// The program: picks the subcommand, prints help, and turns failures into the exit status and a
// message on standard error.

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tools/Command.h"

namespace OrbelCli {

class Application {
public:
    Application();
    int Run(const std::vector<std::string>& words, std::ostream& out, std::ostream& messages);
    std::string Help() const;

private:
    Command* Find(const std::string& name) const;
    int RunCommand(Command& command, const std::vector<std::string>& words, std::ostream& out, std::ostream& messages);
    static std::string Advice(int status);

    std::vector<std::unique_ptr<Command>> commands;
};

}
