#include <gtest/gtest.h>

#include <filesystem>
#include <string>

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

TEST_F(DiagnosticsFilterTest, ListedPackagesAndClassesAreHidden)
{
    directory.Write(packageFile, "CMetry\nDeviceDriver\n");
    directory.Write(classFile, "List\n");

    EXPECT_FALSE(filter.IsTraced("CMetry", "CMetryCalculator"));
    EXPECT_FALSE(filter.IsTraced("DeviceDriver", ""));
    EXPECT_FALSE(filter.IsTraced("Utilities", "List"));
    EXPECT_TRUE(filter.IsTraced("Utilities", "Map"));
}

TEST_F(DiagnosticsFilterTest, ShowOnlyTracesTheListedPackageAlone)
{
    directory.Write(packageFile, "{ShowOnly}\nUtilities\n");

    EXPECT_TRUE(filter.IsTraced("Utilities", "List"));
    EXPECT_FALSE(filter.IsTraced("CMetry", "List"));
    EXPECT_FALSE(filter.IsTraced("utilities", ""));
    // The mark's line stays in the list as a name.
    EXPECT_TRUE(filter.IsTraced("{ShowOnly}", ""));
}

TEST_F(DiagnosticsFilterTest, ShowOnlyFromTheClassFileShowsListedPackagesToo)
{
    directory.Write(packageFile, "CMetry\n");
    directory.Write(classFile, "List {ShowOnly} please\nMap\n");

    EXPECT_TRUE(filter.IsTraced("CMetry", "CMetryCalculator"));
    EXPECT_TRUE(filter.IsTraced("Utilities", "Map"));
    EXPECT_FALSE(filter.IsTraced("Utilities", "List"));
    EXPECT_TRUE(filter.IsTraced("Utilities", "List {ShowOnly} please"));
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
