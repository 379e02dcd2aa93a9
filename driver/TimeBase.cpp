#include "driver/TimeBase.h"

#include <mutex>

#include "driver/platform/SystemTimeBase.h"

namespace DeviceDriver {

using Utilities::SmartPointer;

namespace {

struct CurrentTimeBase {
    std::mutex mutex;
    SmartPointer<TimeBase> system{new SystemTimeBase()};
    SmartPointer<TimeBase> current{system};
};

// Never destroyed: threads and static destructors may still ask for the time at exit.
CurrentTimeBase& Selection()
{
    static CurrentTimeBase* selection = new CurrentTimeBase();
    return *selection;
}

}

TimeBase::~TimeBase() = default;

SmartPointer<TimeBase> TimeBase::Current()
{
    CurrentTimeBase& selection = Selection();
    std::lock_guard<std::mutex> lock(selection.mutex);
    return selection.current;
}

SmartPointer<TimeBase> TimeBase::System()
{
    return Selection().system;
}

SmartPointer<TimeBase> TimeBase::Replace(const SmartPointer<TimeBase>& timeBase)
{
    CurrentTimeBase& selection = Selection();
    std::lock_guard<std::mutex> lock(selection.mutex);
    SmartPointer<TimeBase> previous = selection.current;
    selection.current = timeBase.IsNull() ? selection.system : timeBase;
    return previous;
}

}
