#pragma once

#include <gtest/gtest.h>

#include "tests/support/SimInstrument.h"

// One virtual instrument for the whole test program, with a lock directory of its own, started
// before the first exported call creates the module's device object. The instrument outlives
// that object: it is stopped at exit, after the object has closed it.
class ApiSimEnvironment : public ::testing::Environment {
public:
    static OrbelTest::SimInstrument& Sim();

    void SetUp() override;
};
