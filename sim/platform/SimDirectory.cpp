#include "sim/platform/SimDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace OrbelSim {

std::string SimDirectory::Resolve()
{
    if (const char* explicitDirectory = std::getenv("ORBEL_SIM_DIR"); explicitDirectory && *explicitDirectory) {
        return explicitDirectory;
    }
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime && *runtime) {
        return std::string(runtime) + "/orbel-sim";
    }
    return "/tmp/orbel-sim-" + std::to_string(::getuid());
}

void SimDirectory::Ensure(const std::string& directory)
{
    for (std::size_t slash = directory.find('/', 1);; slash = directory.find('/', slash + 1)) {
        const std::string part = directory.substr(0, slash);
        if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) {
            throw std::runtime_error("unable to make the directory " + part + ": " + std::strerror(errno));
        }
        if (slash == std::string::npos) {
            break;
        }
    }
}

std::string SimDirectory::DeviceSocket(const std::string& directory, std::uint32_t serial)
{
    return directory + "/" + std::to_string(serial) + ".sock";
}

std::string SimDirectory::DevicePortFile(const std::string& directory, std::uint32_t serial)
{
    return directory + "/" + std::to_string(serial) + ".port";
}

std::string SimDirectory::ControlSocket(const std::string& directory, std::uint32_t serial)
{
    return directory + "/" + std::to_string(serial) + ".ctl";
}

std::string SimDirectory::LogFile(const std::string& directory, std::uint32_t serial)
{
    return directory + "/" + std::to_string(serial) + ".log";
}

bool SimDirectory::Exists(const std::string& path)
{
    struct stat info { };
    return ::lstat(path.c_str(), &info) == 0;
}

void SimDirectory::Remove(const std::string& path)
{
    ::unlink(path.c_str());
}

} // namespace OrbelSim
