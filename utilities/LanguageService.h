#pragma once

#include "utilities/Component.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Utilities {

// The translation component "LanguageService": message texts are keys, the English text
// itself, and a language gives a translation for each.
class LanguageService : public Component {
public:
    ~LanguageService() override;

    virtual String Translate(const String& key) = 0;
    // Fails with ExceptionOutOfBound "Language not available" for a language without a table.
    virtual void SetLanguage(const String& language) = 0;
    virtual String GetLanguage() const = 0;
    // The names of the loaded languages, one element each.
    virtual Vector<String> GetLanguages() const = 0;
    // The key whose translation in the current language is text.
    virtual String ReverseTranslate(const String& text) = 0;
    // With the mark on, a text shows whether it was translated.
    virtual void SetMark(bool mark) = 0;
    virtual bool GetMark() const = 0;
    virtual bool IsLoaded() const = 0;
    virtual void Load() = 0;
};

}
