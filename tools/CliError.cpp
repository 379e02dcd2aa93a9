#include "tools/CliError.h"

namespace OrbelCli {

CliError::CliError(int exitStatus, const std::string& message) : std::runtime_error(message), exitStatus(exitStatus) { }

CliError CliError::Usage(const std::string& message)
{
    return CliError(UsageStatus, message);
}

}
