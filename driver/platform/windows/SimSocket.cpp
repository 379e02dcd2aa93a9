#include "driver/platform/SimSocket.h"

#include <winsock2.h>

#include <windows.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>

#include "utilities/platform/windows/WideText.h"

namespace DeviceDriver {

namespace {

// Winsock here has no Unix sockets: orbel-sim also listens on TCP 127.0.0.1 and writes the port
// into this file beside its socket.
const std::string PortSuffix = ".port";
constexpr int highestPort = 65535;

bool IsSet(const char* value)
{
    return value != nullptr && *value != '\0';
}

// Once for the process; the system cleans up when it ends.
bool WinsockStarted()
{
    static const bool started = [] {
        WSADATA data{};
        return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    return started;
}

SOCKET Native(int socket)
{
    return static_cast<SOCKET>(socket);
}

// The port that orbel-sim published, or 0.
int PublishedPort(const std::string& directory, const std::string& serial)
{
    std::ifstream file(directory + "/" + serial + PortSuffix);
    int port = 0;
    return file >> port && port > 0 && port <= highestPort ? port : 0;
}

// Socket handles are small numbers, so an int holds them, as on the other systems.
int ConnectTo(int port, int& error)
{
    if (!WinsockStarted()) {
        error = EIO;
        return -1;
    }
    const SOCKET socket = ::WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, WSA_FLAG_NO_HANDLE_INHERIT);
    if (socket == INVALID_SOCKET) {
        error = EIO;
        return -1;
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<u_short>(port));
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        error = ::WSAGetLastError() == WSAECONNREFUSED ? ENODEV : EIO;
        ::closesocket(socket);
        return -1;
    }
    // Frames are small and answered one by one: waiting to fill a segment only delays them.
    const BOOL noDelay = TRUE;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&noDelay), sizeof noDelay);
    return static_cast<int>(socket);
}

}

std::string SimSocket::DefaultDirectory()
{
    if (const char* simDirectory = std::getenv("ORBEL_SIM_DIR"); IsSet(simDirectory)) {
        return simDirectory;
    }
    if (const char* localData = std::getenv("LOCALAPPDATA"); IsSet(localData)) {
        return std::string(localData) + "/orbel-sim";
    }
    return "orbel-sim";
}

std::vector<std::string> SimSocket::Serials(const std::string& directory)
{
    std::vector<std::string> serials;
    WIN32_FIND_DATAW found{};
    const HANDLE search =
        ::FindFirstFileW(Utilities::WideText::FromNarrow(directory + "/*" + PortSuffix).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return serials;
    }
    do {
        const std::string name = Utilities::WideText::ToNarrow(found.cFileName);
        if (name.size() > PortSuffix.size() && name.ends_with(PortSuffix)) {
            serials.push_back(name.substr(0, name.size() - PortSuffix.size()));
        }
    } while (::FindNextFileW(search, &found) != 0);
    ::FindClose(search);
    return serials;
}

bool SimSocket::Answers(const std::string& directory, const std::string& serial)
{
    int error = 0;
    const int socket = Connect(directory, serial, error);
    if (socket < 0) {
        return false;
    }
    Close(socket);
    return true;
}

int SimSocket::Connect(const std::string& directory, const std::string& serial, int& error)
{
    const int port = PublishedPort(directory, serial);
    if (port == 0) {
        error = ENODEV;
        return -1;
    }
    return ConnectTo(port, error);
}

long SimSocket::Send(int socket, const std::uint8_t* data, std::size_t size)
{
    return ::send(Native(socket), reinterpret_cast<const char*>(data), static_cast<int>(size), 0);
}

long SimSocket::Receive(int socket, std::uint8_t* data, std::size_t size)
{
    return ::recv(Native(socket), reinterpret_cast<char*>(data), static_cast<int>(size), 0);
}

void SimSocket::Close(int socket)
{
    ::closesocket(Native(socket));
}

// A UDP socket on the loopback sent to itself: Winsock waits on sockets alone.
int SimSocket::OpenWaker()
{
    if (!WinsockStarted()) {
        return -1;
    }
    const SOCKET waker = ::WSASocketW(AF_INET, SOCK_DGRAM, IPPROTO_UDP, nullptr, 0, WSA_FLAG_NO_HANDLE_INHERIT);
    if (waker == INVALID_SOCKET) {
        return -1;
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof address;
    u_long nonBlocking = 1;
    if (::bind(waker, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::getsockname(waker, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        ::connect(waker, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::ioctlsocket(waker, FIONBIO, &nonBlocking) != 0) {
        ::closesocket(waker);
        return -1;
    }
    return static_cast<int>(waker);
}

void SimSocket::Rouse(int waker)
{
    if (waker >= 0) {
        const char once = 1;
        ::send(Native(waker), &once, 1, 0);
    }
}

void SimSocket::CloseWaker(int waker)
{
    if (waker >= 0) {
        ::closesocket(Native(waker));
    }
}

SimSocket::Readiness SimSocket::Wait(int socket, int waker, int timeoutMs)
{
    WSAPOLLFD watched[2] = {{Native(socket), POLLRDNORM, 0}, {Native(waker), POLLRDNORM, 0}};
    const int ready = ::WSAPoll(watched, waker >= 0 ? 2 : 1, timeoutMs);
    if (ready == 0) {
        return Readiness::TimedOut;
    }
    if (ready > 0 && watched[1].revents != 0) {
        char drained[64];
        bool any = false;
        while (::recv(Native(waker), drained, sizeof drained, 0) > 0) {
            any = true;
        }
        if (any) {
            return Readiness::Roused;
        }
    }
    // A failed wait is left to Receive to report.
    return Readiness::Readable;
}

}
