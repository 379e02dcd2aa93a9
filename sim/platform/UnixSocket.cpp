#include "sim/platform/UnixSocket.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace OrbelSim {

namespace {

sockaddr_un AddressOf(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) {
        throw std::runtime_error("socket path too long: " + path);
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

} // namespace

UnixSocket::UnixSocket(int fd) : fd(fd) { }

UnixSocket::~UnixSocket()
{
    Close();
}

UnixSocket::UnixSocket(UnixSocket&& other) noexcept : fd(other.fd)
{
    other.fd = -1;
}

UnixSocket& UnixSocket::operator=(UnixSocket&& other) noexcept
{
    if (this != &other) {
        Close();
        fd = other.fd;
        other.fd = -1;
    }
    return *this;
}

void UnixSocket::Close()
{
    if (fd >= 0) {
        ::close(fd);
        fd = -1;
    }
}

UnixSocket UnixSocket::Connect(const std::string& path)
{
    const sockaddr_un address = AddressOf(path);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        throw std::runtime_error(std::string("unable to make a socket: ") + std::strerror(errno));
    }
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int error = errno;
        ::close(fd);
        throw std::runtime_error("unable to connect to " + path + ": " + std::strerror(error));
    }
    return UnixSocket(fd);
}

bool UnixSocket::ReadExact(std::uint8_t* data, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = ::read(fd, data + done, size - done);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(got);
    }
    return true;
}

bool UnixSocket::WriteAll(const std::uint8_t* data, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t sent = ::send(fd, data + done, size - done, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) {
            continue;
        }
        if (sent <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(sent);
    }
    return true;
}

bool UnixSocket::WriteAll(const std::string& text)
{
    return WriteAll(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

std::string UnixSocket::ReadToEnd()
{
    std::string text;
    char buffer[4096];
    while (true) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return text;
        }
        text.append(buffer, static_cast<std::size_t>(got));
    }
}

bool UnixSocket::ReadLine(std::string& line, std::size_t limit, int milliseconds)
{
    line.clear();
    while (line.size() < limit && WaitReadable(milliseconds)) {
        char c = 0;
        const ssize_t got = ::read(fd, &c, 1);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        if (c == '\n') {
            return true;
        }
        line += c;
    }
    return false;
}

bool UnixSocket::WaitReadable(int milliseconds)
{
    pollfd entry{fd, POLLIN, 0};
    int ready = 0;
    do {
        ready = ::poll(&entry, 1, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

void UnixSocket::ShutdownRead()
{
    if (fd >= 0) {
        ::shutdown(fd, SHUT_RD);
    }
}

void UnixSocket::ShutdownBoth()
{
    if (fd >= 0) {
        ::shutdown(fd, SHUT_RDWR);
    }
}

UnixListener::UnixListener(const std::string& path, const std::string& portFile) : path(path), portFile(portFile)
{
    const sockaddr_un address = AddressOf(path);
    int pipeFds[2];
    if (::pipe2(pipeFds, O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::runtime_error(std::string("unable to make a pipe: ") + std::strerror(errno));
    }
    wakeRead = pipeFds[0];
    wakeWrite = pipeFds[1];
    fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ::unlink(path.c_str());
    if (fd < 0 || ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(fd, 16) != 0) {
        const int error = errno;
        CloseAll();
        throw std::runtime_error("unable to listen at " + path + ": " + std::strerror(error));
    }
    if (!portFile.empty()) {
        ListenOnLoopback();
    }
}

// The port is written to a new file that then replaces the old one, so that a reader never sees
// half a number.
void UnixListener::ListenOnLoopback()
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    tcpFd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (tcpFd < 0 || ::bind(tcpFd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(tcpFd, 16) != 0 || ::getsockname(tcpFd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        const int error = errno;
        CloseAll();
        throw std::runtime_error(std::string("unable to listen on 127.0.0.1: ") + std::strerror(error));
    }
    const std::string written = portFile + ".new";
    std::ofstream(written) << ntohs(address.sin_port) << '\n';
    if (std::rename(written.c_str(), portFile.c_str()) != 0) {
        const int error = errno;
        CloseAll();
        throw std::runtime_error("unable to write " + portFile + ": " + std::strerror(error));
    }
}

UnixListener::~UnixListener()
{
    CloseAll();
}

void UnixListener::CloseAll()
{
    for (const int open : {fd, tcpFd, wakeRead, wakeWrite}) {
        if (open >= 0) {
            ::close(open);
        }
    }
    if (fd >= 0) {
        ::unlink(path.c_str());
    }
    if (tcpFd >= 0) {
        ::unlink(portFile.c_str());
    }
}

std::optional<UnixSocket> UnixListener::Accept()
{
    while (true) {
        pollfd entries[3] = {{wakeRead, POLLIN, 0}, {fd, POLLIN, 0}, {tcpFd, POLLIN, 0}};
        const int ready = ::poll(entries, tcpFd >= 0 ? 3 : 2, -1);
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready < 0 || (entries[0].revents & POLLIN) != 0) {
            return std::nullopt;
        }
        const int listening = (entries[1].revents & POLLIN) != 0 ? fd : tcpFd;
        const int accepted = ::accept4(listening, nullptr, nullptr, SOCK_CLOEXEC);
        if (accepted >= 0 && listening == tcpFd) {
            // Frames are small and answered one by one: waiting to fill a segment only delays them.
            const int noDelay = 1;
            ::setsockopt(accepted, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
        }
        if (accepted >= 0) {
            return UnixSocket(accepted);
        }
    }
}

void UnixListener::Wake()
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeWrite, &byte, 1);
}

} // namespace OrbelSim
