#pragma once

#include "utilities/LanguageService.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Utilities {

// The one way from a message to the "LanguageService" component. Without that component a
// message stays the English text that the code holds. Placeholders are filled in after the
// translation, so that a translation carries them too.
class LanguageTranslator {
public:
    LanguageTranslator();

    // Never fails: a failing service gives the key, in "(" and ")" when its mark is on.
    String Translate(const String& key) const;
    void SetLanguage(const String& language);
    String GetLanguage() const;
    Vector<String> GetLanguages() const;
    String ReverseTranslate(const String& text) const;
    void SetMark(bool mark);
    bool GetMark() const;
    bool IsLoaded() const;
    void Load();

private:
    String KeyAfterFailure(const String& key) const;

    SmartPointer<LanguageService> service;
};

// A message of the code in the language of the user; the placeholder, if given, is filled in
// after the translation.
String Translated(const String& english);
String Translated(const char* english, const char* placeholder, const String& value);

}
