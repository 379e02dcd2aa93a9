#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/RGBConversion.h"
#include "cmetry/VellumCMMScreen.h"
#include "manager/MessageService.h"
#include "utilities/Anything.h"
#include "utilities/Directory.h"
#include "utilities/DllLoader.h"
#include "utilities/ExceptionDllLoader.h"
#include "utilities/File.h"
#include "utilities/NamingService.h"
#include "utilities/ResolveAs.h"

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using CMetry::HvColorVector;
using Utilities::ResolveAs;
using Utilities::SmartPointer;

namespace {

std::vector<std::string> received;

void Remember(const Utilities::String& name, const Utilities::Anything& value)
{
    // Appended piece by piece: GCC 12 at -O3 sees a false overlap (-Wrestrict) in " " + number.
    std::string entry = name.ToStdString();
    if (value.IsValid()) {
        entry += ' ';
        entry += std::to_string(value.AsLong());
    }
    received.push_back(entry);
}

HvColorVector Lab(float lightness, float a, float b)
{
    CMetry::HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", "D65");
    conditions.SetCondition("Colorimetric.Observer", "TwoDegree");
    return HvColorVector(lightness, a, b, conditions);
}

std::vector<float> RGB(float lightness, float a, float b)
{
    HvColorVector rgb;
    EXPECT_TRUE(CMetry::GetRGB(Lab(lightness, a, b), rgb));
    return {rgb[0], rgb[1], rgb[2]};
}

// Both example plug-ins, a file that is no plug-in and one built for another plug-in ABI before
// them and a second copy of one that brings no new name, loaded once for the whole program as a
// host would load them.
class ExamplePlugins : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        builtInRed = RGB(53.24f, 80.09f, 67.2f);
        directory = new TemporaryDirectory;
        std::filesystem::create_directory(*directory / "plugins");
        directory->Write("plugins/Aa-not-a-plugin.so", "no shared object");
        std::filesystem::copy_file(ORBEL_WRONG_ABI_PLUGIN, *directory / "plugins/Ab-wrong-abi.so");
        std::filesystem::copy_file(ORBEL_MESSAGE_SERVICE_PLUGIN, *directory / "plugins/ConsoleMessageService.so");
        std::filesystem::copy_file(ORBEL_MESSAGE_SERVICE_PLUGIN, *directory / "plugins/ConsoleMessageServiceCopy.so");
        std::filesystem::copy_file(ORBEL_SCREEN_PLUGIN, *directory / "plugins/SRGBScreen.so");
        Utilities::NamingService::Instance().LoadPlugins(
            *Utilities::Directory::Create(Utilities::Directory::DirectoryGiven, directory->Path().c_str()));
    }

    static void TearDownTestSuite() { delete directory; }

    static inline TemporaryDirectory* directory = nullptr;
    static inline std::vector<float> builtInRed;
};

TEST_F(ExamplePlugins, MessageServicePrintsEventsAndDeliversThemToSubscribers)
{
    const SmartPointer<GUI::MessageService> messages = ResolveAs<GUI::MessageService>("MessageService");
    ASSERT_FALSE(messages.IsNull());
    received.clear();
    messages->Subscribe("MeasurementKey", Remember);
    messages->Subscribe("Connection", Remember);
    testing::internal::CaptureStdout();
    messages->Post("MeasurementKey", Utilities::Anything());
    messages->Post("Connection", Utilities::Anything(1L));
    messages->Unsubscribe(Remember);
    messages->Post("Connection", Utilities::Anything(0L));
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ((std::vector<std::string>{"MeasurementKey", "Connection 1"}), received);
    EXPECT_EQ(0u, printed.find("Event MeasurementKey\nEvent Connection "));
    EXPECT_EQ(3, std::count(printed.begin(), printed.end(), '\n'));
}

TEST_F(ExamplePlugins, ScreenComponentConvertsLabToSRGB)
{
    ASSERT_FALSE(ResolveAs<CMetry::VellumCMMScreen>("VellumCMMScreen").IsNull());
    EXPECT_EQ((std::vector<float>{255.0f, 255.0f, 255.0f}), RGB(100.0f, 0.0f, 0.0f));
    EXPECT_EQ((std::vector<float>{0.0f, 0.0f, 0.0f}), RGB(0.0f, 0.0f, 0.0f));
    EXPECT_EQ((std::vector<float>{119.0f, 119.0f, 119.0f}), RGB(50.0f, 0.0f, 0.0f));
    const std::vector<float> red = RGB(53.24f, 80.09f, 67.2f);
    EXPECT_EQ((std::vector<float>{255.0f, 0.0f, 0.0f}), red);
    EXPECT_NE(builtInRed, red);
}

TEST_F(ExamplePlugins, APluginBuiltForAnotherAbiVersionIsRefusedNamingBothVersions)
{
    EXPECT_TRUE(ResolveAs<GUI::MessageService>("WrongAbiMessageService").IsNull());
    const SmartPointer<Utilities::DllLoader> loader =
        Utilities::DllLoader::Create(Utilities::NamingService::Instance());
    try {
        loader->Load(Utilities::File::Create(ORBEL_WRONG_ABI_PLUGIN));
        ADD_FAILURE() << "loaded";
    } catch (const Utilities::ExceptionDllLoader& failure) {
        EXPECT_STREQ("WrongAbiPlugin.so is built for plug-in ABI version 999, this module has version 1",
            failure.Text()->CString());
    }
}

}
