#pragma once
// A connected Unix-domain stream socket, and a listening one whose Accept can be woken. The
// listener may also listen on TCP 127.0.0.1, for hosts that have no Unix sockets (Windows under
// Wine); a TCP connection then reads and writes like a Unix one.

#include <cstdint>
#include <optional>
#include <string>

namespace OrbelSim {

class UnixSocket {
public:
    UnixSocket() = default;
    explicit UnixSocket(int fd);
    ~UnixSocket();
    UnixSocket(UnixSocket&& other) noexcept;
    UnixSocket& operator=(UnixSocket&& other) noexcept;
    UnixSocket(const UnixSocket&) = delete;
    UnixSocket& operator=(const UnixSocket&) = delete;

    // Raises std::runtime_error with a text when nothing listens there.
    static UnixSocket Connect(const std::string& path);

    bool Valid() const { return fd >= 0; }
    // False at the end of the stream or on an error.
    bool ReadExact(std::uint8_t* data, std::size_t size);
    bool WriteAll(const std::uint8_t* data, std::size_t size);
    bool WriteAll(const std::string& text);
    std::string ReadToEnd();
    // Reads up to a line end, at most `limit` bytes, waiting at most `milliseconds` for each part.
    bool ReadLine(std::string& line, std::size_t limit, int milliseconds);
    // Waits at most `milliseconds` for something to read; false on time-out.
    bool WaitReadable(int milliseconds);
    void ShutdownRead();
    void ShutdownBoth();

private:
    void Close();

    int fd = -1;
};

class UnixListener {
public:
    // Binds and listens at `path`, replacing a stale file; raises std::runtime_error with a text.
    // With a port file, also listens on a TCP port of 127.0.0.1 that the system chooses, and
    // writes its number into that file while listening.
    explicit UnixListener(const std::string& path, const std::string& portFile = std::string());
    ~UnixListener();
    UnixListener(const UnixListener&) = delete;
    UnixListener& operator=(const UnixListener&) = delete;

    // Empty once woken.
    std::optional<UnixSocket> Accept();
    // Safe to call from a signal handler.
    void Wake();
    int WakeFd() const { return wakeWrite; }

private:
    void ListenOnLoopback();
    void CloseAll();

    std::string path;
    std::string portFile;
    int fd = -1;
    int tcpFd = -1;
    int wakeRead = -1;
    int wakeWrite = -1;
};

} // namespace OrbelSim
