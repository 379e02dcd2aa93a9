#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "driver/PaviloFunctionality_PC.h"
#include "driver/PaviloUSBDevice.h"
#include "driver/ScanFifo.h"
#include "tests/driver/PaviloSimFixture.h"
#include "tests/driver/VectorLists.h"
#include "utilities/Mutex.h"
#include "utilities/Observee.h"
#include "utilities/Observer.h"

extern char** environ;

namespace DeviceDriverTest {

using DeviceDriver::PaviloFunctionality_PC;
using DeviceDriver::PaviloUSBDevice;
using DeviceDriver::ScanFifo;

namespace {

const char* const childMarkerVariable = "ORBEL_PAVILO_CHILD_MARKER";

// Records each event with the thread it came on.
class EventRecorder : public Utilities::Observer<long> {
public:
    void Update(Utilities::Observee<long>*, long value) override
    {
        std::lock_guard<std::mutex> held(guard);
        events.push_back(value);
        threads.push_back(std::this_thread::get_id());
    }

    std::vector<long> Events()
    {
        std::lock_guard<std::mutex> held(guard);
        return events;
    }

    std::thread::id ThreadOf(std::size_t index)
    {
        std::lock_guard<std::mutex> held(guard);
        return threads.at(index);
    }

private:
    std::mutex guard;
    std::vector<long> events;
    std::vector<std::thread::id> threads;
};

// The 10-byte request of a vendor command.
std::vector<std::uint8_t> Request(std::uint8_t code, std::uint8_t direction)
{
    return {direction, 2, 0, 0, code, 0, 0, 0, 0, 0};
}

// Asks the instrument for `size` bytes of its EEPROM on the bulk-in pipe.
void RequestEEPROM(PaviloUSBDevice& device, std::uint16_t size)
{
    std::uint8_t payload[8] = {0, 0, 0, 0, static_cast<std::uint8_t>(size >> 8), static_cast<std::uint8_t>(size), 0, 0};
    device.PerformDeviceIOControl(Request(196, 0).data(), payload, 8);
}

class PaviloUSBDeviceTest : public PaviloSimFixture {
protected:
    PaviloUSBDeviceTest()
    {
        observee.AddObserver(&recorder);
        owner.SetOwner(&observee);
    }

    PaviloFunctionality_PC owner;
    Utilities::Observee<long> observee;
    EventRecorder recorder;
};

}

TEST(PaviloUSBDeviceNames, CleansPaths)
{
    EXPECT_EQ(PaviloUSBDevice::CleanPath("\\\\?\\usb#vid_1&pid_2#6&{a-b}").ToStdString(), "usbvid_1pid_26a-b");
    EXPECT_EQ(PaviloUSBDevice::CleanPath("sim:1000001").ToStdString(), "sim:1000001");
}

TEST_F(PaviloUSBDeviceTest, OpensClosesAndRefusesTransfersWhenClosed)
{
    EXPECT_EQ(OutOfBoundText([] { PaviloUSBDevice(nullptr, "sim:4242"); }), "PaviloUSBDevice open failed !");

    PaviloUSBDevice device(&owner, sim.Path().c_str());
    EXPECT_TRUE(device.IsOpen());
    device.Shutdown();
    EXPECT_FALSE(device.IsOpen());

    std::uint8_t payload[8] = {};
    std::uint8_t buffer[16] = {};
    ScanFifo fifo;
    EXPECT_EQ(OutOfBoundText([&] { device.PerformDeviceIOControl(Request(201, 1).data(), payload, 8); }),
        "Device IO control impossible (device not open)");
    EXPECT_EQ(OutOfBoundText([&] { device.Read(buffer, 16, 100); }), "Read/Write data impossible (device not open)");
    EXPECT_EQ(OutOfBoundText([&] { device.Write(buffer, 16, 100); }), "Read/Write data impossible (device not open)");
    EXPECT_EQ(
        OutOfBoundText([&] { device.ReadDataStrip(fifo, 256, 100); }), "Read data strip impossible (device not open)");
    EXPECT_FALSE(device.WasInterrupted());

    EXPECT_TRUE(device.Open());
    device.PerformDeviceIOControl(Request(201, 1).data(), payload, 8);
    EXPECT_EQ(payload[4], 0xF0);
    device.CloseConnections();
    EXPECT_FALSE(device.IsOpen());
    EXPECT_TRUE(device.Open());
    EXPECT_TRUE(device.IsOpen());
}

TEST_F(PaviloUSBDeviceTest, ATimedOutReadCarriesThePlatformTextAndLeavesTheDeviceOpen)
{
    PaviloUSBDevice device(&owner, sim.Path().c_str());
    std::uint8_t buffer[16] = {};
    RequestEEPROM(device, 16);
    sim.Command({"fault", "bulk-timeout"});
    EXPECT_EQ(OutOfBoundText([&] { device.Read(buffer, 16, 100); }),
        "Read data failed (Linux Error (1460) : Connection timed out )");

    RequestEEPROM(device, 16);
    device.Read(buffer, 16, 100);
    EXPECT_TRUE(device.IsOpen());
}

TEST_F(PaviloUSBDeviceTest, StripReadsRefusePacketSizesThatDoNotFitTheBlocks)
{
    PaviloUSBDevice device(&owner, sim.Path().c_str());
    ScanFifo fifo;
    EXPECT_EQ(OutOfBoundText([&] { device.ReadDataStrip(fifo, 0, 100); }), "Read data faild (wrong data size)");

    // 6553 passes the limit; the instrument's blocks of 256-byte packets then don't fit it.
    std::uint8_t parameters[8] = {0, 100, 0, 0, 0, 1, 1, 0};
    std::uint8_t none[1] = {};
    DrawStripOf(23);
    device.PerformDeviceIOControl(Request(193, 0).data(), parameters, 8);
    device.PerformDeviceIOControl(Request(192, 0).data(), none, 0);
    EXPECT_EQ(OutOfBoundText([&] { device.ReadDataStrip(fifo, 6553, 100); }), "Read data faild (wrong data size)");
    EXPECT_FALSE(fifo.IsFinished());
}

// A key pressed as soon as the device is open is heard: opening ends when the instrument has
// taken the connection.
TEST_F(PaviloUSBDeviceTest, PressIsLatchedOnceAndToldToTheObserversOnANotifierThread)
{
    PaviloUSBDevice device(&owner, sim.Path().c_str());
    EXPECT_FALSE(device.WasInterrupted());

    sim.Command({"press"});
    ASSERT_TRUE(Eventually([&] { return recorder.Events().size() == 1; }));
    EXPECT_EQ(recorder.Events()[0], 0);
    EXPECT_NE(recorder.ThreadOf(0), std::this_thread::get_id());
    EXPECT_TRUE(device.WasInterrupted());
    EXPECT_FALSE(device.WasInterrupted());

    sim.Command({"press"});
    sim.Command({"press"});
    ASSERT_TRUE(Eventually([&] { return recorder.Events().size() == 3; }));
    EXPECT_TRUE(device.WasInterrupted());
    EXPECT_FALSE(device.WasInterrupted());
}

TEST_F(PaviloUSBDeviceTest, TheLatchIsSharedByTwoConnectionsToOneInstrument)
{
    PaviloFunctionality_PC secondOwner;
    Utilities::Observee<long> secondObservee;
    EventRecorder secondRecorder;
    secondObservee.AddObserver(&secondRecorder);
    secondOwner.SetOwner(&secondObservee);
    PaviloUSBDevice first(&owner, sim.Path().c_str());
    PaviloUSBDevice second(&secondOwner, sim.Path().c_str());

    // Each listener takes the latch for the press it hears; both have heard it before the question.
    sim.Command({"press"});
    ASSERT_TRUE(Eventually([&] { return recorder.Events().size() == 1 && secondRecorder.Events().size() == 1; }));
    EXPECT_TRUE(second.WasInterrupted());
    EXPECT_FALSE(first.WasInterrupted());
}

TEST_F(PaviloUSBDeviceTest, PullingTheCableTellsEventOneAndCloses)
{
    PaviloUSBDevice device(&owner, sim.Path().c_str());
    sim.Command({"unplug"});
    ASSERT_TRUE(Eventually([&] { return !recorder.Events().empty(); }));
    EXPECT_EQ(recorder.Events(), std::vector<long>{1});
    EXPECT_NE(recorder.ThreadOf(0), std::this_thread::get_id());
    EXPECT_FALSE(device.IsOpen());
    EXPECT_FALSE(device.Open());

    sim.Command({"plug"});
    ASSERT_TRUE(Eventually([&] { return device.Open(); }));
    device.Shutdown();
    EXPECT_EQ(recorder.Events(), std::vector<long>{1});
}

TEST_F(PaviloUSBDeviceTest, ShutdownEndsTheListenerAtOnce)
{
    PaviloUSBDevice device(&owner, sim.Path().c_str());
    const auto started = std::chrono::steady_clock::now();
    device.Shutdown();
    device.Shutdown();
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(900));
    EXPECT_TRUE(recorder.Events().empty());
}

// Run by the next test in a process of its own, on the instrument and locks of that test: one
// transfer, then a marker file.
TEST(PaviloUSBDeviceChild, Transfer)
{
    const char* marker = std::getenv(childMarkerVariable);
    if (marker == nullptr) {
        GTEST_SKIP() << "runs as the second process of TransfersOfTwoProcessesNeverInterleave";
    }
    PaviloUSBDevice device(nullptr, "sim:1000001");
    std::uint8_t payload[8] = {};
    device.PerformDeviceIOControl(Request(201, 1).data(), payload, 8);
    std::ofstream(marker) << "done";
}

TEST_F(PaviloUSBDeviceTest, TransfersOfTwoProcessesNeverInterleave)
{
    PaviloUSBDevice device(&owner, sim.Path().c_str());
    const std::string marker = (lockDirectory / "child-done").string();
    Utilities::Mutex deviceMutex(PaviloUSBDevice::CleanPath(sim.Path().c_str()));
    ASSERT_TRUE(deviceMutex.Lock(0));

    ::setenv(childMarkerVariable, marker.c_str(), 1);
    std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    std::string filter = "--gtest_filter=PaviloUSBDeviceChild.Transfer";
    char* arguments[] = {self.data(), filter.data(), nullptr};
    pid_t child = 0;
    const int spawned = ::posix_spawn(&child, self.c_str(), nullptr, nullptr, arguments, environ);
    ::unsetenv(childMarkerVariable);
    ASSERT_EQ(spawned, 0);

    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_FALSE(std::filesystem::exists(marker));
    deviceMutex.Unlock();

    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_TRUE(std::filesystem::exists(marker));
}

}
