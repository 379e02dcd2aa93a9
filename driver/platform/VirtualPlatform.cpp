#include "driver/platform/VirtualPlatform.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "driver/platform/VirtualConnection.h"

namespace DeviceDriver {

namespace {

const char* const virtualPathPrefix = "sim:";
const std::string SocketSuffix = ".sock";
// How long an instrument may take to take a new connection as its own.
constexpr std::uint32_t GreetingTimeoutMs = 2000;

bool IsSet(const char* value)
{
    return value != nullptr && *value != '\0';
}

// Shorter serials are smaller numbers: sorting by length first gives the numeric order.
bool SerialBefore(const std::string& left, const std::string& right)
{
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

}

VirtualPlatform::VirtualPlatform(const Utilities::String& directory) : directory(directory) { }

Utilities::String VirtualPlatform::DefaultDirectory()
{
    if (const char* simDirectory = std::getenv("ORBEL_SIM_DIR"); IsSet(simDirectory)) {
        return Utilities::String(simDirectory);
    }
    if (const char* runtimeDirectory = std::getenv("XDG_RUNTIME_DIR"); IsSet(runtimeDirectory)) {
        return Utilities::String(std::string(runtimeDirectory) + "/orbel-sim");
    }
    return Utilities::String("/tmp/orbel-sim-" + std::to_string(::getuid()));
}

bool VirtualPlatform::Serves(const Utilities::String& path) const
{
    return HasPrefix(path, virtualPathPrefix);
}

std::vector<Utilities::String> VirtualPlatform::EnumerateDevices()
{
    const std::string folder = Directory();
    std::vector<std::string> serials;
    for (const std::string& name : SocketNames(folder)) {
        const std::string file = folder + "/" + name;
        if (IsSocket(file) && Answers(file)) {
            serials.push_back(name.substr(0, name.size() - SocketSuffix.size()));
        }
    }
    std::sort(serials.begin(), serials.end(), SerialBefore);
    std::vector<Utilities::String> paths;
    paths.reserve(serials.size());
    for (const std::string& serial : serials) {
        paths.emplace_back(virtualPathPrefix + serial);
    }
    return paths;
}

UsbResult VirtualPlatform::Open(const Utilities::String& path, std::unique_ptr<UsbConnection>& connection)
{
    connection.reset();
    const std::string text = path.ToStdString();
    const std::string serial = Serves(path) ? text.substr(std::strlen(virtualPathPrefix)) : std::string();
    if (!IsSerial(serial)) {
        return UsbResult::Failure(EINVAL);
    }
    int error = 0;
    const int socket = Connect(Directory() + "/" + serial + SocketSuffix, 0, error);
    if (socket < 0) {
        const bool absent = error == ENOENT || error == ECONNREFUSED || error == ENOTDIR;
        return UsbResult::Failure(absent ? ENODEV : error);
    }
    auto opened = std::make_unique<VirtualConnection>(path, socket);
    if (!opened->Greet(GreetingTimeoutMs)) {
        return UsbResult::NoDevice();
    }
    connection = std::move(opened);
    return UsbResult::Success(0);
}

std::string VirtualPlatform::Directory() const
{
    return (directory.IsEmpty() ? DefaultDirectory() : directory).ToStdString();
}

std::vector<std::string> VirtualPlatform::SocketNames(const std::string& directory)
{
    std::vector<std::string> names;
    DIR* folder = ::opendir(directory.c_str());
    if (folder == nullptr) {
        return names;
    }
    while (const dirent* entry = ::readdir(folder)) {
        const std::string name = entry->d_name;
        if (name.size() > SocketSuffix.size() && name.ends_with(SocketSuffix) &&
            IsSerial(name.substr(0, name.size() - SocketSuffix.size()))) {
            names.push_back(name);
        }
    }
    ::closedir(folder);
    return names;
}

bool VirtualPlatform::IsSocket(const std::string& file)
{
    struct stat status { };
    return ::lstat(file.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

// A socket file outlives an instrument that crashed; only a listening one is an instrument. A full
// backlog still means that it listens.
bool VirtualPlatform::Answers(const std::string& file)
{
    int error = 0;
    const int socket = Connect(file, SOCK_NONBLOCK, error);
    if (socket >= 0) {
        ::close(socket);
        return true;
    }
    return error == EAGAIN || error == EINPROGRESS;
}

int VirtualPlatform::Connect(const std::string& file, int flags, int& error)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (file.size() >= sizeof address.sun_path) {
        error = ENAMETOOLONG;
        return -1;
    }
    std::memcpy(address.sun_path, file.c_str(), file.size() + 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    if (socket < 0) {
        error = errno;
        return -1;
    }
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        error = errno;
        ::close(socket);
        return -1;
    }
    return socket;
}

// A serial names a file in the directory: no separators, and not one of the directory's own entries.
bool VirtualPlatform::IsSerial(const std::string& serial)
{
    return !serial.empty() && serial != "." && serial != ".." && serial.find('/') == std::string::npos;
}

}
