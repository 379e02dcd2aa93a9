#pragma once

#include <cstdint>

#include "utilities/SmartPointer.h"

namespace DeviceDriver {

// Where Timing takes the time from and how it sleeps. The process has one current time base,
// the system's unless replaced: a test puts in a faster or a manual one, so that a wait of the
// driver takes no wall-clock time and can be checked against the time base.
class TimeBase {
public:
    TimeBase() = default;
    TimeBase(const TimeBase&) = delete;
    TimeBase& operator=(const TimeBase&) = delete;
    virtual ~TimeBase();

    // UTC.
    virtual int64_t MicrosecondsSince1970() = 0;
    virtual void Sleep(int64_t microseconds) = 0;

    static Utilities::SmartPointer<TimeBase> Current();
    static Utilities::SmartPointer<TimeBase> System();
    // Gives back the time base that was current; a null one puts the system's back.
    static Utilities::SmartPointer<TimeBase> Replace(const Utilities::SmartPointer<TimeBase>& timeBase);
};

}
