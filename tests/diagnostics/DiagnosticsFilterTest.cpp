#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "diagnostics/DiagnosticsFilter.h"
#include "tests/TemporaryDirectory.h"
#include "tests/WorkingDirectoryChange.h"

using Diagnostics::DiagnosticsFilter;

namespace {

constexpr char packageFile[] = "PackageDiagnosticsFilter.txt";
constexpr char classFile[] = "ClassDiagnosticsFilter.txt";

// Each test has its own working directory with the filter files it writes.
class DiagnosticsFilterTest : public testing::Test {
protected:
    TemporaryDirectory directory;
    WorkingDirectoryChange inside{directory.Path()};
    DiagnosticsFilter filter;
};

}

TEST_F(DiagnosticsFilterTest, ListedNamesAreHiddenAndAfterShowOnlyTheListedAloneAreShown)
{
    struct Asked {
        const char* package;
        const char* className;
        bool traced;
    };
    struct Listing {
        const char* packages;
        const char* classes;
        std::vector<Asked> asked;
    };
    const Listing listings[] = {
        {"CMetry\nDeviceDriver\n", "List\n",
            {{"CMetry", "CMetryCalculator", false}, {"DeviceDriver", "", false}, {"Utilities", "List", false},
                {"Utilities", "Map", true}}},
        // The mark's line stays in the list as a name.
        {"{ShowOnly}\nUtilities\n", "",
            {{"Utilities", "List", true}, {"CMetry", "List", false}, {"utilities", "", false},
                {"{ShowOnly}", "", true}}},
        // A mark in the class file shows the listed packages too.
        {"CMetry\n", "List {ShowOnly} please\nMap\n",
            {{"CMetry", "CMetryCalculator", true}, {"Utilities", "Map", true}, {"Utilities", "List", false},
                {"Utilities", "List {ShowOnly} please", true}}},
    };
    for (const Listing& listing : listings) {
        directory.Write(packageFile, listing.packages);
        directory.Write(classFile, listing.classes);
        DiagnosticsFilter reading;
        for (const Asked& asked : listing.asked) {
            EXPECT_EQ(reading.IsTraced(asked.package, asked.className), asked.traced)
                << listing.packages << listing.classes << ": " << asked.package << " " << asked.className;
        }
    }
}

TEST_F(DiagnosticsFilterTest, WithoutFilesEverythingIsTracedUntilANewFilterReadsThem)
{
    EXPECT_TRUE(filter.IsTraced("Utilities", "List"));
    EXPECT_TRUE(filter.IsTraced("CMetry", ""));
    EXPECT_FALSE(std::filesystem::exists(directory / packageFile));
    EXPECT_FALSE(std::filesystem::exists(directory / classFile));
    directory.Write(packageFile, "CMetry\n");
    EXPECT_TRUE(filter.IsTraced("CMetry", ""));

    DiagnosticsFilter later;
    EXPECT_FALSE(later.IsTraced("CMetry", ""));
}

TEST_F(DiagnosticsFilterTest, BadFilesListWhatTheyCanAndNeverFail)
{
    const std::string longName(20000, 'x');
    directory.Write(packageFile, std::string("\1\2\377\n", 4) + longName + "\r\n\n\nCMetry");
    directory.Write(classFile, std::string("\0binary\n\n", 9));

    EXPECT_FALSE(filter.IsTraced(longName.substr(0, 254).c_str(), ""));
    EXPECT_TRUE(filter.IsTraced(longName.substr(0, 255).c_str(), ""));
    EXPECT_FALSE(filter.IsTraced("\1\2\377", ""));
    EXPECT_FALSE(filter.IsTraced("CMetry", ""));
    // Neither a blank line nor one that begins with a zero byte names the empty class of a free
    // function.
    EXPECT_TRUE(filter.IsTraced("Utilities", ""));
}

TEST_F(DiagnosticsFilterTest, AFilterThatIsADirectoryListsNothing)
{
    std::filesystem::create_directory(directory / packageFile);
    directory.Write(classFile, "{ShowOnly}\nList\n");

    EXPECT_TRUE(filter.IsTraced("CMetry", "List"));
    EXPECT_FALSE(filter.IsTraced("CMetry", "Map"));
}
