#include "utilities/LanguageTranslator.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/LanguageService.h"
#include "utilities/ResolveAs.h"

#include "tests/utilities/FailureText.h"

#include <gtest/gtest.h>

#include <string>

using namespace Utilities;

namespace {

// A service that the test steers: it brackets what it translates, or fails as told.
class ScriptedLanguageService : public LanguageService {
public:
    String Translate(const String& key) override
    {
        if (translateFails) {
            throw ExceptionOutOfBound("translation failed");
        }
        return String("[") + key + String("]");
    }
    void SetLanguage(const String& chosen) override { language = chosen; }
    String GetLanguage() const override { return language; }
    Vector<String> GetLanguages() const override
    {
        Vector<String> languages(1);
        languages[0] = language;
        return languages;
    }
    String ReverseTranslate(const String& text) override { return text.SubString(1, text.Length() - 2); }
    void SetMark(bool on) override { mark = on; }
    bool GetMark() const override
    {
        if (markFails) {
            throw ExceptionOutOfBound("mark failed");
        }
        return mark;
    }
    bool IsLoaded() const override { return true; }
    void Load() override
    {
        if (loadFailure == LoadFailure::ResourceNotAvailable) {
            throw ExceptionResourceNotAvailable("Could not initialize LanguageService!\n\nKeyfile missing\n");
        }
        if (loadFailure == LoadFailure::Other) {
            throw ExceptionOutOfBound("load failed");
        }
    }

    enum class LoadFailure { None, ResourceNotAvailable, Other };

    bool translateFails = false;
    bool markFails = false;
    bool mark = false;
    LoadFailure loadFailure = LoadFailure::None;
    String language = "English";
};

// Outranks any real "LanguageService" for the length of one test.
class LanguageTranslatorTest : public testing::Test {
protected:
    ComponentCreatorSingleton<ScriptedLanguageService> creator{"LanguageService", "$Revision: 1000.0 $", "Utilities"};
    SmartPointer<ScriptedLanguageService> service = ResolveAs<ScriptedLanguageService>("LanguageService");
};

}

TEST_F(LanguageTranslatorTest, TranslationComesFromTheService)
{
    ASSERT_FALSE(service.IsNull());
    LanguageTranslator translator;
    EXPECT_STREQ("[Dark data not valid]", translator.Translate("Dark data not valid").CString());

    translator.SetLanguage("Deutsch");
    EXPECT_STREQ("Deutsch", translator.GetLanguage().CString());
    EXPECT_STREQ("Recognition", translator.ReverseTranslate("[Recognition]").CString());
}

TEST_F(LanguageTranslatorTest, FailingTranslationGivesTheKeyMarkedAsTheServiceSays)
{
    service->translateFails = true;
    const LanguageTranslator translator;
    EXPECT_STREQ("Unable to access Pavilo", translator.Translate("Unable to access Pavilo").CString());
    service->mark = true;
    EXPECT_STREQ("(Unable to access Pavilo)", translator.Translate("Unable to access Pavilo").CString());
    service->markFails = true;
    EXPECT_STREQ("Unable to access Pavilo", translator.Translate("Unable to access Pavilo").CString());
}

TEST_F(LanguageTranslatorTest, LoadPassesOnTheTextOfAMissingResource)
{
    LanguageTranslator translator;
    EXPECT_NO_THROW(translator.Load());
    service->loadFailure = ScriptedLanguageService::LoadFailure::ResourceNotAvailable;
    EXPECT_EQ("Could not initialize LanguageService!\n\nKeyfile missing\n",
        FailureText<ExceptionResourceNotAvailable>([&translator] { translator.Load(); }));
    service->loadFailure = ScriptedLanguageService::LoadFailure::Other;
    EXPECT_EQ("load failed", FailureText<ExceptionOutOfBound>([&translator] { translator.Load(); }));
}
