#include "utilities/Preferences.h"
#include "utilities/ResolveAs.h"
#include "utilities/platform/Preferences_PC.h"

#include "tests/utilities/SettingsHome.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

using namespace Utilities;

namespace {

class PreferencesTest : public testing::Test {
protected:
    std::string Get(const char* section, const char* key, const char* defaultValue = "default")
    {
        return preferences->Get(section, key, defaultValue).ToStdString();
    }

    SettingsHome settings;
    SmartPointer<Preferences> preferences = ResolveAs<Preferences>("Preferences");
};

}

TEST(PreferencesFileNameTest, ProgramNameUpToItsFirstDot)
{
    EXPECT_STREQ("Tool.ini", Preferences_PC::SettingsFileName("/opt/app/Tool").CString());
    EXPECT_STREQ("My.ini", Preferences_PC::SettingsFileName("/opt/app/My.Tool.bin").CString());
    EXPECT_STREQ("tool.ini", Preferences_PC::SettingsFileName("/opt/my.app/tool").CString());
}

TEST_F(PreferencesTest, ReadsTheSettingsFileOfTheProgram)
{
    ASSERT_FALSE(SmartPointerCast<Preferences_PC>(preferences).IsNull());
    EXPECT_EQ("default", Get("LanguageService", "Language"));

    settings.WriteSettings("; comment\r\n"
                           "Language=Outside\r\n"
                           "[Other]\r\n"
                           "Language=Other\r\n"
                           "[ LanguageService ]\r\n"
                           "  Language = German  \r\n"
                           "Mark=\r\n"
                           "Quoted=\"  two words \"\r\n"
                           "Language=Later\r\n");
    EXPECT_EQ("German", Get("LanguageService", "Language"));
    EXPECT_EQ("German", Get("languageservice", "LANGUAGE"));
    EXPECT_EQ("", Get("LanguageService", "Mark"));
    EXPECT_EQ("  two words ", Get("LanguageService", "Quoted"));
    EXPECT_EQ("false", Get("LanguageService", "Log", "false"));
    EXPECT_EQ("Other", Get("Other", "Language"));
    EXPECT_EQ("default", Get("Missing", "Language"));
}

TEST_F(PreferencesTest, SetWritesWhatGetReadsAndKeepsTheRest)
{
    preferences->Set("LanguageService", "Language", "German");
    EXPECT_EQ("[LanguageService]\nLanguage=German\n", settings.ReadSettings());
    EXPECT_EQ("German", Get("LanguageService", "Language"));

    settings.WriteSettings("[LanguageService]\n; keep me\nLanguage=German\n\n[Other]\nKey=1\n");
    preferences->Set("languageservice", "Mark", "true");
    preferences->Set("LanguageService", "language", "French");
    preferences->Set("Third", "Log", "");
    EXPECT_EQ("[LanguageService]\n; keep me\nlanguage=French\nMark=true\n\n[Other]\nKey=1\n[Third]\nLog=\n",
        settings.ReadSettings());
    EXPECT_EQ("French", Get("LanguageService", "Language"));
    EXPECT_EQ("", Get("Third", "Log"));
    EXPECT_FALSE(std::filesystem::exists(settings.SettingsFile() + ".new"));
}

TEST(PreferencesDirectoryTest, SetMakesTheMissingSettingsDirectory)
{
    const SettingsHome settings("not/yet");
    const SmartPointer<Preferences> preferences = ResolveAs<Preferences>("Preferences");
    EXPECT_STREQ("none", preferences->Get("A", "B", "none").CString());
    preferences->Set("A", "B", "C");
    EXPECT_EQ("[A]\nB=C\n", settings.ReadSettings());
}

TEST_F(PreferencesTest, BadSettingsFilesGiveTheDefault)
{
    settings.WriteSettings("");
    EXPECT_EQ("default", Get("LanguageService", "Language"));

    std::string binary;
    for (int round = 0; round < 64; ++round) {
        for (int byte = 0; byte < 256; ++byte) {
            binary += static_cast<char>(byte);
        }
    }
    settings.WriteSettings(binary);
    EXPECT_EQ("default", Get("LanguageService", "Language"));
    preferences->Set("LanguageService", "Mark", "true");
    EXPECT_EQ("true", Get("LanguageService", "Mark"));
    EXPECT_EQ(binary, settings.ReadSettings().substr(0, binary.size()));

    const std::string longLine(20000, 'x');
    settings.WriteSettings("[LanguageService]\nLanguage=" + longLine + "\nMark=true\n");
    EXPECT_EQ(std::string(1023, 'x'), Get("LanguageService", "Language"));
    EXPECT_EQ("true", Get("LanguageService", "Mark"));
    preferences->Set("LanguageService", "Log", "true");
    EXPECT_EQ("[LanguageService]\nLanguage=" + longLine + "\nMark=true\nLog=true\n", settings.ReadSettings());
}

TEST_F(PreferencesTest, ADirectoryInPlaceOfTheSettingsFileIsLeftAsItWas)
{
    std::filesystem::create_directories(settings.SettingsFile());
    EXPECT_EQ("default", Get("LanguageService", "Language"));
    EXPECT_NO_THROW(preferences->Set("LanguageService", "Language", "German"));
    EXPECT_TRUE(std::filesystem::is_directory(settings.SettingsFile()));
}

TEST_F(PreferencesTest, AReadOnlySettingsDirectoryKeepsTheFormerSettings)
{
    if (::geteuid() == 0) {
        GTEST_SKIP() << "the superuser writes into read-only directories";
    }
    settings.WriteSettings("[LanguageService]\nLanguage=German\n");
    const std::string directory = std::filesystem::path(settings.SettingsFile()).parent_path().string();
    ::chmod(directory.c_str(), 0500);
    EXPECT_NO_THROW(preferences->Set("LanguageService", "Language", "French"));
    ::chmod(directory.c_str(), 0700);
    EXPECT_EQ("German", Get("LanguageService", "Language"));
}
