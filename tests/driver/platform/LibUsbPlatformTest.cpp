#ifdef ORBEL_HAVE_LIBUSB

#include <gtest/gtest.h>

#include "driver/platform/LibUsbPlatform.h"

namespace DeviceDriverTest {

using DeviceDriver::LibUsbPlatform;
using DeviceDriver::UsbConnection;

// The instrument's ids come from the settings file; until they are set nothing is looked for.
TEST(LibUsbPlatform, WithoutIdsFindsNothingAndOpensNothing)
{
    LibUsbPlatform platform(0, 0);
    EXPECT_TRUE(platform.EnumerateDevices().empty());
    std::unique_ptr<UsbConnection> connection;
    EXPECT_TRUE(platform.Open("usb:1-1", connection).IsNoDevice());
    EXPECT_EQ(connection, nullptr);
    EXPECT_TRUE(platform.Serves("usb:1-1.4"));
    EXPECT_FALSE(platform.Serves("sim:1000001"));
}

}

#endif
