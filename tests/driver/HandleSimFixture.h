#pragma once
// Handles on the virtual instrument: a connected, open handle, the few condition items the tests
// change, and the texts and spectra that come back.

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "driver/ConfigurationData.h"
#include "driver/SpectrumData.h"
#include "tests/driver/PaviloSimFixture.h"

namespace DeviceDriverTest {

class HandleSimFixture : public PaviloSimFixture {
protected:
    template<class Handle>
    void OpenOnSim(Handle& handle)
    {
        ASSERT_TRUE(handle.Connect(sim.Path().c_str())) << handle.GetLastError().ToStdString();
        ASSERT_TRUE(handle.Open()) << handle.GetLastError().ToStdString();
    }

    template<class Handle>
    void SetItem(Handle& handle, std::uint16_t id, std::uint32_t value)
    {
        DeviceDriver::ConfigurationData conditions;
        ASSERT_TRUE(handle.GetConditions(conditions, false));
        conditions.SetU32(id, value);
        conditions.Mark(id, true);
        ASSERT_TRUE(handle.SetConditions(conditions, false));
    }

    template<class Handle>
    float FloatItem(Handle& handle, std::uint16_t id)
    {
        DeviceDriver::ConfigurationData conditions;
        EXPECT_TRUE(handle.GetConditions(conditions, false));
        float value = 0.0f;
        conditions.GetFloat(id, value);
        return value;
    }

    template<class Handle>
    std::uint32_t U32Item(Handle& handle, std::uint16_t id)
    {
        DeviceDriver::ConfigurationData conditions;
        EXPECT_TRUE(handle.GetConditions(conditions, false));
        std::uint32_t value = 0;
        conditions.GetU32(id, value);
        return value;
    }

    static std::string Text(const Utilities::String& text) { return text.ToStdString(); }

    static Utilities::Vector<float> FirstRow(DeviceDriver::SpectrumData spectrum)
    {
        spectrum.FirstRow();
        return spectrum.Load();
    }

    void Place(const std::string& target) { sim.Command({"place", target}); }

    // The cable goes after that many transfers of the operation, which holds the device's lock: it
    // must fail at once, without waiting on the listener it holds up. The instrument comes back after.
    template<class Operation>
    void ExpectCableLossFailsAtOnce(const char* transfersBeforeTheDrop, Operation&& operation)
    {
        sim.Command({"fault", "drop", "--count", transfersBeforeTheDrop});
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(operation());
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
        sim.Command({"plug"});
    }

    // Restarts the instrument with these start options.
    void Restart(const std::vector<std::string>& options)
    {
        sim.Run({"stop"});
        std::vector<std::string> arguments = {"start", "--time-scale", "0"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        sim.Command(arguments);
    }
};

}
