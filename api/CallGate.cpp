#include "api/CallGate.h"

std::atomic<CallGate::Connection> CallGate::connection{Connection::unknown};

CallGate::Entry CallGate::Enter()
{
    return Entry(Lock());
}

CallGate::Entry CallGate::EnterUnlessKnown()
{
    Entry entry(Lock(), std::try_to_lock);
    if (!entry.owns_lock() && connection == Connection::unknown) {
        entry.lock();
    }
    return entry;
}

void CallGate::NoteConnection(bool connected)
{
    connection = connected ? Connection::connected : Connection::notConnected;
}

bool CallGate::LastKnownConnection()
{
    return connection == Connection::connected;
}

std::recursive_mutex& CallGate::Lock()
{
    static std::recursive_mutex lock;
    return lock;
}
