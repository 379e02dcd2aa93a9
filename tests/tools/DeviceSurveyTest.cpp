#include <gtest/gtest.h>

#include <cerrno>

#include "tools/DeviceSurvey.h"

using DeviceDriver::UsbInstrumentIds;
using DeviceDriver::UsbResult;
using OrbelCli::DeviceSurvey;

TEST(DeviceSurveyTest, EachOpenResultSaysWhyAndWhatToDo)
{
    const struct {
        UsbResult opened;
        std::vector<std::string> told;
    } cases[] = {
        {UsbResult::Success(0), {"yes"}},
        {UsbResult::Failure(EACCES),
            {"no: permission denied", "packaging/60-orbel.rules", "s/\"0000\"/\"abcd\"/; s/\"0000\"/\"01ef\"/",
                "/etc/udev/rules.d/60-orbel.rules", "udevadm control --reload-rules && sudo udevadm trigger"}},
        {UsbResult::Failure(EBUSY), {"no: busy (held by another program)", "Close that program"}},
        {UsbResult::NoDevice(), {"no: No such device"}},
    };
    for (const auto& [opened, told] : cases) {
        const std::string verdict = DeviceSurvey::Verdict(opened, UsbInstrumentIds{0xabcd, 0x01ef});
        for (const std::string& part : told) {
            EXPECT_NE(verdict.find(part), std::string::npos) << verdict << " lacks " << part;
        }
        // One line with no comma, so that it fits a field of every format.
        EXPECT_EQ(verdict.find_first_of(",\n"), std::string::npos) << verdict;
    }
}

TEST(DeviceSurveyTest, NoneFoundNamesTheIdsLookedForOrHowToConfigureThem)
{
    EXPECT_NE(DeviceSurvey::NoneFound(UsbInstrumentIds{0xabcd, 0x01ef}).find("None has the USB ids abcd:01ef."),
        std::string::npos);
    EXPECT_NE(DeviceSurvey::NoneFound(UsbInstrumentIds{}).find("UsbVendorId and UsbProductId in the section [Pavilo]"),
        std::string::npos);
}
