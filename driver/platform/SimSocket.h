#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace DeviceDriver {

// How this system reaches the virtual instruments that orbel-sim publishes in a directory: the
// Unix socket <serial>.sock where the system has Unix sockets, else TCP to 127.0.0.1 on the
// port written in <serial>.port. A socket is an int, -1 for none; errors are errno numbers.
class SimSocket {
public:
    // $ORBEL_SIM_DIR, else the system's own place for it.
    static std::string DefaultDirectory();
    // The serials whose endpoint lies in the directory, whether or not an instrument answers.
    static std::vector<std::string> Serials(const std::string& directory);
    // Whether an instrument listens at the endpoint; a full backlog still means that it listens.
    static bool Answers(const std::string& directory, const std::string& serial);
    // A connected socket, or -1 with the error in `error`; ENODEV when no instrument is there.
    static int Connect(const std::string& directory, const std::string& serial, int& error);

    // The count of bytes moved, 0 or less once the connection is gone. An interrupted call is
    // made again.
    static long Send(int socket, const std::uint8_t* data, std::size_t size);
    static long Receive(int socket, std::uint8_t* data, std::size_t size);
    static void Close(int socket);

    enum class Readiness { Readable, Roused, TimedOut };
    // A waker lets one thread rouse another that waits on a socket; -1 if none could be made.
    static int OpenWaker();
    static void Rouse(int waker);
    static void CloseWaker(int waker);
    // Until the socket has bytes for Receive (or has closed), the waker is roused, or `timeoutMs`
    // has passed; -1 waits without limit. A rousing counts once: it is taken back as reported.
    static Readiness Wait(int socket, int waker, int timeoutMs);
};

}
