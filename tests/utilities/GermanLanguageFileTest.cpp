#include "utilities/FileLanguageService.h"

#include "tests/TemporaryDirectory.h"
#include "tests/utilities/SettingsHome.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

using namespace Utilities;

namespace {

// From the tests folder the build names, not from __FILE__: a packager maps source paths away.
const std::filesystem::path shipped = std::filesystem::path(ORBEL_TEST_DATA) / "../packaging/Languages";

std::vector<std::string> LinesOf(const std::string& name)
{
    std::ifstream file(shipped / name, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::multiset<std::string> PlaceholdersOf(const std::string& text)
{
    static const std::regex placeholder("%[A-Z]+%");
    std::multiset<std::string> found;
    for (auto match = std::sregex_iterator(text.begin(), text.end(), placeholder); match != std::sregex_iterator();
         ++match) {
        found.insert(match->str());
    }
    return found;
}

// The texts that pick a result code for the host by their wording, which a translation keeps.
const std::vector<std::string> codeSelectors = {"Dark data not valid", "White data not valid",
    "Dark calculation: ", "White calculation: ", "Recognition", "Device IO control impossible"};

TEST(GermanLanguageFile, EveryKeyHasATranslationWithTheSamePlaceholders)
{
    const std::vector<std::string> keys = LinesOf("Languages.key");
    const std::vector<std::string> german = LinesOf("german.lang");
    ASSERT_GT(keys.size(), 1u);
    ASSERT_EQ(keys.size(), german.size());
    EXPECT_EQ(keys[0], german[0]) << "the version lines must agree";
    std::set<std::string> seen;
    for (std::size_t line = 1; line < keys.size(); ++line) {
        const std::string& key = keys[line];
        const std::string& translation = german[line];
        EXPECT_FALSE(key.empty()) << "line " << line + 1;
        EXPECT_TRUE(seen.insert(key).second) << "twice: " << key;
        EXPECT_FALSE(translation.empty()) << key;
        EXPECT_LT(translation.size(), 10000u) << key;
        EXPECT_EQ(PlaceholdersOf(key), PlaceholdersOf(translation)) << key;
        EXPECT_EQ(key.back() == ' ', translation.back() == ' ') << "a text that goes on after a blank: " << key;
        for (const std::string& selector : codeSelectors) {
            if (key.find(selector) != std::string::npos) {
                EXPECT_NE(std::string::npos, translation.find(selector)) << key;
            }
        }
    }
}

TEST(GermanLanguageFile, TheServiceTranslatesWithTheShippedFiles)
{
    SettingsHome settings;
    settings.WriteSettings("[LanguageService]\nLanguage=German\n");
    TemporaryDirectory application;
    std::filesystem::copy(shipped, application / "Languages");
    FileLanguageService service(application.Path().c_str());
    EXPECT_EQ("Nicht genügend Strom verfügbar", service.Translate("Not enough power available").ToStdString());
    String prefix = service.Translate("EEPROM Error (ID %VALUE%): ");
    prefix.Replace("%VALUE%", String(1211L));
    EXPECT_EQ("EEPROM-Fehler (ID 1211): ", prefix.ToStdString());
}

}
