#include <cerrno>
#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/platform/UsbPlatforms.h"
#include "driver/platform/VirtualPlatform.h"
#include "tests/driver/VectorLists.h"
#include "tests/support/SimInstrument.h"
#include "tests/utilities/SettingsHome.h"

namespace DeviceDriverTest {

using OrbelTest::ProgramResult;
using OrbelTest::SimInstrument;

using DeviceDriver::UsbConnection;
using DeviceDriver::UsbPlatform;
using DeviceDriver::UsbPlatforms;
using DeviceDriver::UsbResult;
using DeviceDriver::VirtualPlatform;
using ::testing::ElementsAre;

namespace {

// Stands for the real instruments: two attached, and none that may be opened.
class RealInstruments : public UsbPlatform {
public:
    explicit RealInstruments(std::vector<std::string>& opened) : opened(opened) { }

    bool Serves(const Utilities::String& path) const override { return HasPrefix(path, "usb:"); }
    std::vector<Utilities::String> EnumerateDevices() override { return {"usb:1-4", "usb:2-1.3"}; }
    UsbResult Open(const Utilities::String& path, std::unique_ptr<UsbConnection>&) override
    {
        opened.push_back(path.ToStdString());
        return UsbResult::Failure(EACCES);
    }

private:
    std::vector<std::string>& opened;
};

}

TEST(UsbPlatforms, ListsRealInstrumentsFirstAndOpensEachPathOnItsPlatform)
{
    const SimInstrument sim;
    std::vector<std::string> opened;
    std::vector<std::unique_ptr<UsbPlatform>> platforms;
    platforms.push_back(std::make_unique<RealInstruments>(opened));
    platforms.push_back(std::make_unique<VirtualPlatform>(Utilities::String(sim.Directory())));
    UsbPlatforms all(std::move(platforms));

    EXPECT_THAT(Texts(all.EnumerateDevices()), ElementsAre("usb:1-4", "usb:2-1.3", "sim:1000001"));

    std::unique_ptr<UsbConnection> connection;
    EXPECT_EQ(all.Open("usb:2-1.3", connection).Error(), static_cast<std::uint32_t>(EACCES));
    EXPECT_THAT(opened, ElementsAre("usb:2-1.3"));

    const UsbResult virtualOpened = all.Open("sim:1000001", connection);
    ASSERT_TRUE(virtualOpened.Succeeded()) << virtualOpened.Text().ToStdString();
    EXPECT_EQ(connection->GetPath().ToStdString(), "sim:1000001");

    EXPECT_TRUE(all.Open("com:3", connection).IsNoDevice());
    EXPECT_EQ(connection, nullptr);
    EXPECT_TRUE(all.Serves("usb:9-9"));
    EXPECT_FALSE(all.Serves("com:3"));
    EXPECT_THAT(opened, ElementsAre("usb:2-1.3"));
}

// With no instrument ids there is no real instrument to look for; the virtual ones remain unless
// they are switched off.
TEST(UsbPlatforms, WithoutIdsListsTheVirtualInstrumentsAlone)
{
    const SimInstrument sim;
    const EnvironmentSetting directory("ORBEL_SIM_DIR", sim.Directory());
    UsbPlatforms all(DeviceDriver::UsbInstrumentIds{}, true);
    EXPECT_THAT(Texts(all.EnumerateDevices()), ElementsAre("sim:1000001"));
    std::unique_ptr<UsbConnection> connection;
    EXPECT_TRUE(all.Open("usb:1-1", connection).IsNoDevice());
    EXPECT_TRUE(all.Open("sim:1000001", connection).Succeeded());
    connection.reset();

    UsbPlatforms none(DeviceDriver::UsbInstrumentIds{}, false);
    EXPECT_TRUE(none.EnumerateDevices().empty());
    EXPECT_TRUE(none.Open("sim:1000001", connection).IsNoDevice());
}

}
