#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/TemporaryDirectory.h"
#include "tests/WorkingDirectoryChange.h"
#include "tests/utilities/FailureText.h"
#include "tests/utilities/SettingsHome.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/Directory.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/File.h"
#include "utilities/LanguageService.h"

using Utilities::ComponentCreatorSingleton;
using Utilities::Directory;
using Utilities::ExceptionOutOfBound;
using Utilities::ExceptionResourceNotAvailable;
using Utilities::File;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

template<class Entry>
std::vector<std::string> NamesOf(const std::vector<SmartPointer<Entry>>& entries)
{
    std::vector<std::string> names;
    for (const SmartPointer<Entry>& entry : entries) {
        names.push_back(entry->GetName().ToStdString());
    }
    return names;
}

// Translates the two messages of directories into German, and leaves everything else.
class GermanDirectoryMessages : public Utilities::LanguageService {
public:
    String Translate(const String& key) override
    {
        if (key == String("Error: Directory %DIR% does not exist")) {
            return "Fehler: Verzeichnis %DIR% existiert nicht";
        }
        if (key == String("Creation of subdirectory '%DIRECTORYNAME%' failed")) {
            return "Unterverzeichnis '%DIRECTORYNAME%' nicht angelegt";
        }
        return key;
    }
    void SetLanguage(const String&) override { }
    String GetLanguage() const override { return "German"; }
    Utilities::Vector<String> GetLanguages() const override { return Utilities::Vector<String>(0); }
    String ReverseTranslate(const String& text) override { return text; }
    void SetMark(bool) override { }
    bool GetMark() const override { return false; }
    bool IsLoaded() const override { return true; }
    void Load() override { }
};

class DirectoryListingTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char* name : {"a.lang", "B.LANG", "c.txt", "Languages.key", "noext", "x.", ".lang"}) {
            folder.Write(name, "");
        }
        std::filesystem::create_directory(folder / "sub");
        std::filesystem::create_directory(folder / "Plugins");
        std::filesystem::create_directory(folder / "dotted.d");
    }

    TemporaryDirectory folder;
    SmartPointer<Directory> directory = Directory::Create(Directory::DirectoryGiven, folder.Path().c_str());
};

}

TEST(DirectoryTest, KindsNameTheirPlaces)
{
    EXPECT_EQ(std::filesystem::current_path().string(),
        Directory::Create(Directory::DirectoryCurrent)->GetPath().ToStdString());
    // The program of the process, wherever the code runs from.
    EXPECT_EQ(std::filesystem::read_symlink("/proc/self/exe").parent_path().string(),
        Directory::Create(Directory::DirectoryApplication)->GetPath().ToStdString());

    const SmartPointer<Directory> root = Directory::Create(Directory::DirectoryDrives);
    EXPECT_STREQ("/", root->GetPath().CString());
    const std::vector<SmartPointer<Directory>> drives = root->GetSubdirectories("ignored");
    ASSERT_EQ(1U, drives.size());
    EXPECT_STREQ("/", drives[0]->GetPath().CString());

    EXPECT_EQ("Unknown directory kind 7", FailureText<ExceptionOutOfBound>([] { Directory::Create(7, "/tmp"); }));
}

TEST(DirectoryTest, TheSettingsDirectoryFollowsTheUsersConfiguration)
{
    {
        const EnvironmentSetting configuration("XDG_CONFIG_HOME", "/srv/config");
        EXPECT_STREQ("/srv/config/orbel", Directory::Create(Directory::DirectoryWindows)->GetPath().CString());
    }
    const EnvironmentSetting relative("XDG_CONFIG_HOME", "relative/config");
    const EnvironmentSetting home("HOME", "/home/someone");
    EXPECT_STREQ("/home/someone/.config/orbel", Directory::Create(Directory::DirectoryWindows)->GetPath().CString());
}

TEST(DirectoryTest, AGivenDirectoryMustExist)
{
    TemporaryDirectory folder;
    std::filesystem::create_directory(folder / "sub");

    EXPECT_EQ(folder / "sub",
        Directory::Create(Directory::DirectoryGiven, (folder / "sub/").c_str())->GetPath().ToStdString());
    const std::string windowsForm = folder.Path() + "\\sub\\";
    EXPECT_EQ(
        folder / "sub", Directory::Create(Directory::DirectoryGiven, windowsForm.c_str())->GetPath().ToStdString());

    const std::string missing = folder / "missing";
    EXPECT_EQ("Error: Directory " + missing + " does not exist", FailureText<ExceptionResourceNotAvailable>([&] {
        Directory::Create(Directory::DirectoryGiven, missing.c_str());
    }));
    EXPECT_FALSE(std::filesystem::exists(missing));
    EXPECT_EQ("Error: Directory  does not exist",
        FailureText<ExceptionResourceNotAvailable>([] { Directory::Create(Directory::DirectoryGiven, ""); }));
}

TEST(DirectoryTest, NamesAndParents)
{
    TemporaryDirectory folder;
    std::filesystem::create_directories(folder / "a/b");
    const SmartPointer<Directory> directory = Directory::Create(Directory::DirectoryGiven, (folder / "a/b").c_str());

    EXPECT_STREQ("b", directory->GetName().CString());
    EXPECT_EQ(folder / "a", directory->GetParent()->GetPath().ToStdString());
    EXPECT_STREQ("", Directory::Create(Directory::DirectoryDrives)->GetName().CString());
    EXPECT_STREQ("/", Directory::Create(Directory::DirectoryGiven, "/tmp")->GetParent()->GetPath().CString());

    const WorkingDirectoryChange inside(folder.Path());
    EXPECT_STREQ(".", Directory::Create(Directory::DirectoryGiven, "a")->GetParent()->GetPath().CString());
}

TEST(DirectoryTest, MessagesAreTranslatedBeforeTheirPlaceholdersAreFilled)
{
    const ComponentCreatorSingleton<GermanDirectoryMessages> german{
        "LanguageService", "$Revision: 1000.0 $", "Utilities"};
    TemporaryDirectory folder;
    const std::string missing = folder / "missing";
    EXPECT_EQ("Fehler: Verzeichnis " + missing + " existiert nicht", FailureText<ExceptionResourceNotAvailable>([&] {
        Directory::Create(Directory::DirectoryGiven, missing.c_str());
    }));
    const SmartPointer<Directory> directory = Directory::Create(Directory::DirectoryGiven, folder.Path().c_str());
    EXPECT_EQ("Unterverzeichnis 'x/y' nicht angelegt",
        FailureText<ExceptionResourceNotAvailable>([&] { directory->CreateSubdirectory("x/y"); }));
}

TEST_F(DirectoryListingTest, FilesNeedADotAndMatchWithoutCase)
{
    EXPECT_EQ((std::vector<std::string>{".lang", "B.LANG", "a.lang"}), NamesOf(directory->GetFiles("*", "lang")));
    EXPECT_EQ((std::vector<std::string>{"Languages.key"}), NamesOf(directory->GetFiles("Languages", "key")));
    // "x." has only two characters, as "." and ".." have fewer.
    EXPECT_EQ((std::vector<std::string>{".lang", "B.LANG", "Languages.key", "a.lang", "c.txt", "dotted.d"}),
        NamesOf(directory->GetFiles("*", "*")));
    EXPECT_TRUE(directory->GetFiles("*", "dll").empty());

    const std::vector<SmartPointer<File>> files = directory->GetFiles("a", "lang");
    ASSERT_EQ(1U, files.size());
    EXPECT_EQ(folder / "a.lang", files[0]->GetPath().ToStdString());
}

TEST_F(DirectoryListingTest, SubdirectoriesAreTheNamesWithoutADot)
{
    // A plain file without a dot counts too: the listing doesn't look at what an entry is.
    EXPECT_EQ((std::vector<std::string>{"Plugins", "noext", "sub"}), NamesOf(directory->GetSubdirectories("*")));
    const std::vector<SmartPointer<Directory>> plugins = directory->GetSubdirectories("plugins");
    ASSERT_EQ(1U, plugins.size());
    EXPECT_EQ(folder / "Plugins", plugins[0]->GetPath().ToStdString());
    EXPECT_TRUE(directory->GetSubdirectories("Languages").empty());

    std::filesystem::remove_all(folder.Path());
    EXPECT_TRUE(directory->GetSubdirectories("*").empty());
    EXPECT_TRUE(directory->GetFiles("*", "*").empty());
}

TEST_F(DirectoryListingTest, SubdirectoriesAreCreatedOnce)
{
    directory->CreateSubdirectory("Languages");
    EXPECT_TRUE(std::filesystem::is_directory(folder / "Languages"));
    directory->CreateSubdirectory("Languages");
    EXPECT_EQ((std::vector<std::string>{"Languages"}), NamesOf(directory->GetSubdirectories("Languages")));

    EXPECT_EQ("Creation of subdirectory 'missing/deeper' failed",
        FailureText<ExceptionResourceNotAvailable>([&] { directory->CreateSubdirectory("missing/deeper"); }));
    EXPECT_EQ("Creation of subdirectory 'c.txt' failed",
        FailureText<ExceptionResourceNotAvailable>([&] { directory->CreateSubdirectory("c.txt"); }));
}
