#include "utilities/Anything.h"
#include "utilities/Directory.h"
#include "utilities/NamingService.h"

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Utilities;

namespace {

std::size_t RegisteredNames()
{
    return NamingService::Instance().GetComponentDescriptors("", Anything()).Count();
}

void LoadPluginsOf(const TemporaryDirectory& directory)
{
    NamingService::Instance().LoadPlugins(*Directory::Create(Directory::DirectoryGiven, directory.Path().c_str()));
}

TEST(PluginScan, MissingEmptyOrBrokenPluginDirectoriesChangeNothing)
{
    const std::size_t before = RegisteredNames();
    TemporaryDirectory directory;
    EXPECT_NO_THROW(LoadPluginsOf(directory));
    std::filesystem::create_directory(directory / "plugins");
    EXPECT_NO_THROW(LoadPluginsOf(directory));
    directory.Write("plugins/empty.so", "");
    directory.Write("plugins/text.so", "not a shared object\n");
    directory.Write("plugins/other.txt", "ignored");
    std::filesystem::copy_file("/proc/self/exe", directory / "plugins/program.so");
    EXPECT_NO_THROW(LoadPluginsOf(directory));
    EXPECT_EQ(before, RegisteredNames());
}

}
