#pragma once

#include <string>

// A second process that takes a named Mutex: the program orbel_mutex_holder, started with the
// lock name and a time-out. It answers "locked" or "busy" on a line; a held lock is let go when
// Release is called, and dies with the process when Kill is.
class HolderProcess {
public:
    HolderProcess(const std::string& lockName, unsigned long timeoutMs);
    ~HolderProcess();

    HolderProcess(const HolderProcess&) = delete;
    HolderProcess& operator=(const HolderProcess&) = delete;

    // The next line of the holder, without its end; "timed out" after 10 s of silence, "ended" at
    // the end of its output.
    std::string ReadLine();
    void Release();
    void Kill();

private:
    void Reap();

    int processId;
    int toHolder;
    int fromHolder;
    std::string pending;
};
