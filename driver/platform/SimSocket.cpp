#include "driver/platform/SimSocket.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace DeviceDriver {

namespace {

const std::string SocketSuffix = ".sock";

bool IsSet(const char* value)
{
    return value != nullptr && *value != '\0';
}

std::string SocketPath(const std::string& directory, const std::string& serial)
{
    return directory + "/" + serial + SocketSuffix;
}

bool IsSocket(const std::string& file)
{
    struct stat status { };
    return ::lstat(file.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

int ConnectTo(const std::string& file, int flags, int& error)
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

}

std::string SimSocket::DefaultDirectory()
{
    if (const char* simDirectory = std::getenv("ORBEL_SIM_DIR"); IsSet(simDirectory)) {
        return simDirectory;
    }
    if (const char* runtimeDirectory = std::getenv("XDG_RUNTIME_DIR"); IsSet(runtimeDirectory)) {
        return std::string(runtimeDirectory) + "/orbel-sim";
    }
    return "/tmp/orbel-sim-" + std::to_string(::getuid());
}

std::vector<std::string> SimSocket::Serials(const std::string& directory)
{
    std::vector<std::string> serials;
    DIR* folder = ::opendir(directory.c_str());
    if (folder == nullptr) {
        return serials;
    }
    while (const dirent* entry = ::readdir(folder)) {
        const std::string name = entry->d_name;
        if (name.size() > SocketSuffix.size() && name.ends_with(SocketSuffix) && IsSocket(directory + "/" + name)) {
            serials.push_back(name.substr(0, name.size() - SocketSuffix.size()));
        }
    }
    ::closedir(folder);
    return serials;
}

// A socket file outlives an instrument that crashed; only a listening one is an instrument.
bool SimSocket::Answers(const std::string& directory, const std::string& serial)
{
    int error = 0;
    const int socket = ConnectTo(SocketPath(directory, serial), SOCK_NONBLOCK, error);
    if (socket >= 0) {
        ::close(socket);
        return true;
    }
    return error == EAGAIN || error == EINPROGRESS;
}

int SimSocket::Connect(const std::string& directory, const std::string& serial, int& error)
{
    const int socket = ConnectTo(SocketPath(directory, serial), 0, error);
    if (socket < 0 && (error == ENOENT || error == ECONNREFUSED || error == ENOTDIR)) {
        error = ENODEV;
    }
    return socket;
}

long SimSocket::Send(int socket, const std::uint8_t* data, std::size_t size)
{
    ssize_t sent = 0;
    do {
        sent = ::send(socket, data, size, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return static_cast<long>(sent);
}

long SimSocket::Receive(int socket, std::uint8_t* data, std::size_t size)
{
    ssize_t got = 0;
    do {
        got = ::recv(socket, data, size, 0);
    } while (got < 0 && errno == EINTR);
    return static_cast<long>(got);
}

void SimSocket::Close(int socket)
{
    ::close(socket);
}

int SimSocket::OpenWaker()
{
    return ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

void SimSocket::Rouse(int waker)
{
    if (waker < 0) {
        return;
    }
    // Fails only when the counter is full, and a full counter rouses the waiting thread as well.
    const std::uint64_t once = 1;
    const ssize_t wrote = ::write(waker, &once, sizeof once);
    static_cast<void>(wrote);
}

void SimSocket::CloseWaker(int waker)
{
    if (waker >= 0) {
        ::close(waker);
    }
}

SimSocket::Readiness SimSocket::Wait(int socket, int waker, int timeoutMs)
{
    pollfd watched[2] = {{socket, POLLIN, 0}, {waker, POLLIN, 0}};
    int ready = 0;
    do {
        ready = ::poll(watched, waker >= 0 ? 2 : 1, timeoutMs);
    } while (ready < 0 && errno == EINTR);
    if (ready == 0) {
        return Readiness::TimedOut;
    }
    if (ready > 0 && watched[1].revents != 0) {
        std::uint64_t count = 0;
        if (::read(waker, &count, sizeof count) == sizeof count) {
            return Readiness::Roused;
        }
    }
    // A failed wait is left to Receive to report.
    return Readiness::Readable;
}

}
