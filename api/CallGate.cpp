#include "api/CallGate.h"

std::atomic<bool> CallGate::connection{false};

CallGate::Entry CallGate::Enter()
{
    return Entry(Lock());
}

CallGate::Entry CallGate::TryEnter()
{
    return Entry(Lock(), std::try_to_lock);
}

void CallGate::NoteConnection(bool connected)
{
    connection = connected;
}

bool CallGate::LastKnownConnection()
{
    return connection;
}

std::recursive_mutex& CallGate::Lock()
{
    static std::recursive_mutex lock;
    return lock;
}
