#pragma once
// The current time as an ISO 8601 text in UTC, e.g. "2026-11-23T07:40:12Z".

#include <string>

namespace OrbelCli {

class UtcClock {
public:
    static std::string Now();
};

}
