#include <cstdint>

#include <gtest/gtest.h>

#include "driver/ConfigurationData.h"
#include "driver/CpldProgramRegistry.h"
#include "driver/PaviloLowLevelDriver.h"
#include "tests/driver/PaviloSimFixture.h"
#include "tests/driver/VectorLists.h"

namespace DeviceDriverTest {

using DeviceDriver::ConfigurationData;
using DeviceDriver::CpldProgramRegistry;
using DeviceDriver::CpldStep;
using DeviceDriver::PaviloLowLevelDriver;

namespace {

CpldStep Written(std::uint16_t registerNumber, std::uint16_t value)
{
    return CpldStep{0, registerNumber, value, 0, 0, 0, 0};
}

// The instrument answers a read with the register written last.
CpldStep Verified(std::uint16_t registerNumber, std::uint16_t value, std::uint16_t expected, std::uint16_t mask)
{
    return CpldStep{1, registerNumber, value, 7, expected, mask, 2500};
}

}

class PaviloCpldProgramTest : public PaviloSimFixture {
protected:
    PaviloCpldProgramTest() { EXPECT_TRUE(driver.Open(sim.Path().c_str())); }

    ~PaviloCpldProgramTest() override { driver.Close(); }

    void Run(std::uint32_t number)
    {
        ConfigurationData conditions("PhysicalCondition");
        conditions.SetU32(20000, number);
        conditions.Mark(20000, true);
        driver.SetConditions(conditions);
        EXPECT_TRUE(conditions.MarkedIds().Size() == 0);
    }

    PaviloLowLevelDriver driver;
};

TEST_F(PaviloCpldProgramTest, StepsAreWrittenAndVerifiedUnderTheirMask)
{
    const std::uint32_t passing = CpldProgramRegistry::Add(
        {Written(1, 0x1111), Verified(2, 0x1234, 0x1234, 0xFFFF), Verified(3, 0xAB34, 0x0034, 0x00FF)});
    const std::uint32_t failing =
        CpldProgramRegistry::Add({Verified(4, 0x1234, 0x1234, 0xFFFF), Verified(5, 0x1234, 0x1235, 0x000F)});
    EXPECT_NE(0u, passing);
    EXPECT_NE(passing, failing);
    EXPECT_NO_THROW(Run(passing));
    EXPECT_EQ("CPLD Error: Programming failed", OutOfBoundText([&] { Run(failing); }));
    sim.Command({"fault", "control-timeout", "--count", "1"});
    EXPECT_EQ(0u, OutOfBoundText([&] { Run(passing); }).find("Conditions Error: "));
    EXPECT_EQ(1u, Counter("last_reset"));
    CpldProgramRegistry::Remove(passing);
    CpldProgramRegistry::Remove(failing);
    EXPECT_EQ("CPLD Error: Program not found", OutOfBoundText([&] { Run(passing); }));
    EXPECT_EQ("CPLD Error: Program not found", OutOfBoundText([&] { Run(0); }));
}

}
