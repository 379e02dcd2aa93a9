#pragma once

#include <atomic>
#include <mutex>

// One exported call at a time, whatever the number of host threads: the calls share the one
// instrument and the one Orbel object. The lock is re-entrant, as some exported functions are
// built on others. What the calls learnt last of the connection stays readable without the
// lock, so that the questions a host asks while it waits answer at once during another thread's
// measurement.
class CallGate {
public:
    using Entry = std::unique_lock<std::recursive_mutex>;

    // Waits for the call of another thread to end.
    static Entry Enter();
    // Holds nothing while another thread's call runs, once a call has seen the connection;
    // before that it waits, as there is nothing to answer from.
    static Entry EnterUnlessKnown();

    static void NoteConnection(bool connected);
    static bool LastKnownConnection();

private:
    enum class Connection { unknown, connected, notConnected };

    static std::recursive_mutex& Lock();

    static std::atomic<Connection> connection;
};
