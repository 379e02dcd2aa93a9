#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "driver/platform/UsbInstrumentIds.h"
#include "tests/utilities/SettingsHome.h"

namespace DeviceDriverTest {

using DeviceDriver::UsbInstrumentIds;

TEST(UsbInstrumentIds, TakeFourHexadecimalDigitsForEachIdAndNothingElse)
{
    struct Case {
        const char* text;
        bool valid;
        std::uint16_t vendorId;
        std::uint16_t productId;
    };
    for (const Case& c : {Case{"abcd:1234", true, 0xabcd, 0x1234}, Case{"ABCD:ef01", true, 0xabcd, 0xef01},
             Case{"abcd1234", false, 0, 0}, Case{"abcd:123", false, 0, 0}, Case{"0xab:1234", false, 0, 0},
             Case{"abcg:1234", false, 0, 0}, Case{"", false, 0, 0}}) {
        const auto ids = UsbInstrumentIds::FromPair(c.text);
        ASSERT_EQ(ids.has_value(), c.valid) << c.text;
        if (ids) {
            EXPECT_EQ(ids->vendorId, c.vendorId) << c.text;
            EXPECT_EQ(ids->productId, c.productId) << c.text;
        }
    }
}

// The settings file of this test program, beside the one that SettingsHome names.
void WriteSettings(const SettingsHome& home, const std::string& content)
{
    const std::filesystem::path file = std::filesystem::path(home.SettingsFile()).parent_path() / "test_driver.ini";
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
}

TEST(UsbInstrumentIds, ComeFromTheSettingsFileUnlessTheEnvironmentOverridesThem)
{
    const SettingsHome home;
    WriteSettings(home, "[Pavilo]\nUsbVendorId=abcd\nUsbProductId=1234\n");
    EXPECT_EQ(UsbInstrumentIds::Configured().productId, 0x1234);
    {
        const EnvironmentSetting overridden("ORBEL_USB_ID", "abcd:0002");
        EXPECT_EQ(UsbInstrumentIds::Configured().productId, 0x0002);
    }
    WriteSettings(home, "[Pavilo]\nUsbVendorId=abcd\n");
    EXPECT_FALSE(UsbInstrumentIds::Configured().IsSet());
}

}
