#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/FileLanguageService.h"
#include "utilities/LanguageTranslator.h"
#include "utilities/ResolveAs.h"

#include "tests/TemporaryDirectory.h"
#include "tests/utilities/FailureText.h"
#include "tests/utilities/SettingsHome.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <set>
#include <sstream>
#include <string>

using namespace Utilities;

namespace {

const std::string keys = "Version 7\n"
                         "Unable to access Pavilo\n"
                         "Measurement %VALUE% failed\n"
                         "Two\\nlines\n"
                         "Broken<br>line\n"
                         "\n"
                         "Twice\n"
                         "Twice\n";

const std::string german = "Version 7\n"
                           "Kein Zugang zu Pavilo\n"
                           "Messung %VALUE% fehlgeschlagen\n"
                           "Zwei\\nZeilen\n"
                           "Gebrochene<br>Zeile\n"
                           "Ohne Schluessel\n"
                           "Zweimal, zuerst\n"
                           "Zweimal, zuletzt\n";

// A program directory of the test's own, with the settings of the service in a private home.
class LanguageServiceTest : public testing::Test {
protected:
    void WriteSettings(const std::string& lines) const { settings.WriteSettings("[LanguageService]\n" + lines); }

    void WriteLanguageFile(const std::string& name, const std::string& content) const
    {
        std::filesystem::create_directories(application / "Languages");
        application.Write("Languages/" + name, content);
    }

    void WriteGerman() const
    {
        WriteLanguageFile("Languages.key", keys);
        WriteLanguageFile("german.lang", german);
    }

    std::string Translate(FileLanguageService& service, const char* key) const
    {
        return service.Translate(key).ToStdString();
    }

    SettingsHome settings;
    TemporaryDirectory application;
};

std::string LoadFailure(FileLanguageService& service)
{
    return FailureText<ExceptionResourceNotAvailable>([&service] { service.Translate("Unable to access Pavilo"); });
}

}

TEST_F(LanguageServiceTest, TranslatesFromTheLanguageFiles)
{
    WriteSettings("Language=German\n");
    WriteGerman();
    FileLanguageService service(application.Path().c_str());
    EXPECT_FALSE(service.IsLoaded());

    EXPECT_EQ("Kein Zugang zu Pavilo", Translate(service, "Unable to access Pavilo"));
    EXPECT_TRUE(service.IsLoaded());
    EXPECT_EQ("Zwei\nZeilen", Translate(service, "Two\nlines"));
    EXPECT_EQ("Gebrochene\nZeile", Translate(service, "Broken<br>line"));
    EXPECT_EQ("Zweimal, zuletzt", Translate(service, "Twice"));
    EXPECT_EQ("", Translate(service, ""));
    EXPECT_EQ("Not\nin the file", Translate(service, "Not<br>in the file"));

    ASSERT_EQ(1u, service.GetLanguages().Size());
    EXPECT_STREQ("German", service.GetLanguages()[0].CString());
    EXPECT_STREQ("Version: Version 7, German", service.GetValueString().CString());
    EXPECT_STREQ("Unable to access Pavilo", service.ReverseTranslate("Kein Zugang zu Pavilo").CString());
    EXPECT_STREQ("Unknown", service.ReverseTranslate("Unknown").CString());
}

TEST_F(LanguageServiceTest, MarkShowsWhetherATextWasTranslated)
{
    WriteSettings("Mark=TRUE\nLanguage=German\n");
    WriteGerman();
    FileLanguageService service(application.Path().c_str());
    EXPECT_TRUE(service.GetMark());

    EXPECT_EQ("[Kein Zugang zu Pavilo]", Translate(service, "Unable to access Pavilo"));
    EXPECT_EQ("*No translation*", Translate(service, "No translation"));
    EXPECT_STREQ("Unable to access Pavilo", service.ReverseTranslate("[Kein Zugang zu Pavilo]").CString());
    EXPECT_STREQ("Unknown", service.ReverseTranslate("*Unknown*").CString());
    EXPECT_STREQ("", service.ReverseTranslate("*").CString());

    service.SetMark(false);
    EXPECT_EQ("No translation", Translate(service, "No translation"));
}

TEST_F(LanguageServiceTest, TheLanguageIsChosenAmongTheLoadedOnes)
{
    WriteGerman();
    FileLanguageService service(application.Path().c_str());
    EXPECT_STREQ("English", service.GetLanguage().CString());
    EXPECT_FALSE(service.GetMark());
    EXPECT_EQ("Unable to access Pavilo", Translate(service, "Unable to access Pavilo"));

    service.SetLanguage("German");
    EXPECT_STREQ("German", service.GetLanguage().CString());
    EXPECT_EQ("Kein Zugang zu Pavilo", Translate(service, "Unable to access Pavilo"));
    EXPECT_EQ(
        "Language not available", FailureText<ExceptionOutOfBound>([&service] { service.SetLanguage("English"); }));
    EXPECT_STREQ("German", service.GetLanguage().CString());
}

TEST_F(LanguageServiceTest, MissingFilesFailTheFirstUseOnly)
{
    FileLanguageService withoutDirectory(application.Path().c_str());
    EXPECT_EQ("Could not initialize LanguageService!\n\nDirectory " + application.Path() + " missing!\n\n",
        LoadFailure(withoutDirectory));
    EXPECT_TRUE(withoutDirectory.IsLoaded());
    EXPECT_EQ("Unable to access Pavilo", Translate(withoutDirectory, "Unable to access Pavilo"));
    EXPECT_EQ(0u, withoutDirectory.GetLanguages().Size());

    WriteLanguageFile("german.lang", german);
    FileLanguageService withoutKeyFile(application.Path().c_str());
    EXPECT_EQ("Could not initialize LanguageService!\n\nKeyfile missing\n", LoadFailure(withoutKeyFile));

    FileLanguageService beyondMissingDirectory((application / "gone").c_str());
    EXPECT_EQ(
        "Could not initialize LanguageService!\n\nError: Directory " + (application / "gone") + " does not exist\n",
        LoadFailure(beyondMissingDirectory));
}

TEST_F(LanguageServiceTest, ALanguageOfAnotherVersionIsNotTaken)
{
    WriteSettings("Language=German\n");
    WriteGerman();
    WriteLanguageFile("french.lang", "Version 6\nPas d'acces a Pavilo\n");
    FileLanguageService service(application.Path().c_str());

    EXPECT_EQ("Version conflict in Languagefiles!\n\n"
              "Keyfile = Languages.key : Version = \"Version 7\"\n"
              "Languagefile = french.lang : Version = \"Version 6\"\n\n"
              "Translations for this language are not taken!\n\n",
        LoadFailure(service));
    EXPECT_EQ("Kein Zugang zu Pavilo", Translate(service, "Unable to access Pavilo"));
    ASSERT_EQ(1u, service.GetLanguages().Size());
    EXPECT_EQ(
        "Language not available", FailureText<ExceptionOutOfBound>([&service] { service.SetLanguage("French"); }));
}

TEST_F(LanguageServiceTest, BadLanguageFilesGiveTheEnglishText)
{
    WriteSettings("Language=German\n");
    WriteLanguageFile("Languages.key", "");
    WriteLanguageFile("german.lang", "");
    FileLanguageService empty(application.Path().c_str());
    EXPECT_EQ("Unable to access Pavilo", Translate(empty, "Unable to access Pavilo"));

    std::string binary;
    for (int byte = 255; byte >= 0; --byte) {
        binary += static_cast<char>(byte == '\n' ? 0 : byte);
    }
    WriteLanguageFile("Languages.key", binary + "\n" + binary + "\nUnable to access Pavilo\n");
    WriteLanguageFile("german.lang", binary + "\n" + binary);
    FileLanguageService binaryFiles(application.Path().c_str());
    EXPECT_EQ("Unable to access Pavilo", Translate(binaryFiles, "Unable to access Pavilo"));
    EXPECT_EQ(binary, binaryFiles.Translate(String(binary)).ToStdString());

    const std::string longKey(20000, 'k');
    const std::string longTranslation(20000, 't');
    WriteLanguageFile("Languages.key", "1\n" + longKey + "\nUnable to access Pavilo\nSurplus\n");
    WriteLanguageFile("german.lang", "1\n" + longTranslation + "\nKein Zugang zu Pavilo");
    std::filesystem::create_directories(application / "Languages/odd.lang");
    FileLanguageService longLines(application.Path().c_str());
    EXPECT_NE("no failure", LoadFailure(longLines));
    EXPECT_EQ("Kein Zugang zu Pavilo", Translate(longLines, "Unable to access Pavilo"));
    EXPECT_EQ(std::string(9999, 't'), longLines.Translate(String(std::string(9999, 'k'))).ToStdString());
    EXPECT_EQ("Surplus", Translate(longLines, "Surplus"));
}

TEST_F(LanguageServiceTest, UsageLogCountsTheRequestsOfEachKey)
{
    WriteSettings("Log=True\nLanguage=German\n");
    WriteGerman();
    application.Write("LanguageService.log", "stale\t99\n");
    {
        FileLanguageService service(application.Path().c_str());
        service.Translate("Unable to access Pavilo");
        service.Translate("Not translated");
        service.Translate("Unable to access Pavilo");
    }
    std::istringstream log(application.Read("LanguageService.log"));
    std::set<std::string> lines;
    for (std::string line; std::getline(log, line);) {
        lines.insert(line);
    }
    EXPECT_EQ((std::set<std::string>{"Unable to access Pavilo\t2", "Not translated\t1"}), lines);

    WriteSettings("Log=false\n");
    std::filesystem::remove(application / "LanguageService.log");
    {
        FileLanguageService service(application.Path().c_str());
        service.Translate("Unable to access Pavilo");
    }
    EXPECT_FALSE(std::filesystem::exists(application / "LanguageService.log"));
}

// Beside the test program lie no language files, so the registered service leaves messages English.
TEST(RegisteredLanguageServiceTest, IsTheFileLanguageServiceAndLeavesMessagesEnglishWithoutFiles)
{
    const SmartPointer<LanguageService> service = ResolveAs<LanguageService>("LanguageService");
    EXPECT_FALSE(SmartPointerCast<FileLanguageService>(service).IsNull());
    const LanguageTranslator translator;
    EXPECT_STREQ("Unable to access Pavilo", translator.Translate("Unable to access Pavilo").CString());
    EXPECT_STREQ("Unable to access Pavilo", translator.Translate("Unable to access Pavilo").CString());
    EXPECT_STREQ("", translator.Translate("").CString());
}

namespace {

std::string programDirectoryForTest;

// The service of this module for a program in programDirectoryForTest.
class ServiceOfTestProgram : public FileLanguageService {
public:
    ServiceOfTestProgram() : FileLanguageService(programDirectoryForTest.c_str()) { }
};

// Outranks the registered service for the length of one test.
class TranslatorWithLanguageFilesTest : public LanguageServiceTest {
protected:
    void Register() { creator.emplace("LanguageService", "$Revision: 1000.0 $", "Utilities"); }

    void SetUp() override
    {
        programDirectoryForTest = application.Path();
        WriteGerman();
    }

    std::optional<ComponentCreatorSingleton<ServiceOfTestProgram>> creator;
};

}

TEST_F(TranslatorWithLanguageFilesTest, GermanTemplatesAreMarkedAndGetTheirPlaceholdersFilled)
{
    WriteSettings("Language=German\nMark=true\n");
    Register();
    const LanguageTranslator translator;
    EXPECT_STREQ("German", translator.GetLanguage().CString());
    EXPECT_STREQ("*Not translated*", translator.Translate("Not translated").CString());
    String message = translator.Translate("Measurement %VALUE% failed");
    message.Replace("%VALUE%", "7");
    EXPECT_STREQ("[Messung 7 fehlgeschlagen]", message.CString());
}

TEST_F(TranslatorWithLanguageFilesTest, WithoutFilesTheFailedLoadShowsInParentheses)
{
    std::filesystem::remove_all(application / "Languages");
    WriteSettings("Mark=true\n");
    Register();
    const LanguageTranslator translator;
    EXPECT_STREQ("(Not translated)", translator.Translate("Not translated").CString());
    EXPECT_STREQ("*Not translated*", translator.Translate("Not translated").CString());
}
