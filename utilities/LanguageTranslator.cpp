#include "utilities/LanguageTranslator.h"

#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/ResolveAs.h"

namespace Utilities {

LanguageTranslator::LanguageTranslator() : service(ResolveAs<LanguageService>("LanguageService")) { }

String LanguageTranslator::Translate(const String& key) const
{
    if (service.IsNull()) {
        return key;
    }
    try {
        return service->Translate(key);
    } catch (const Exception&) {
        return KeyAfterFailure(key);
    }
}

void LanguageTranslator::SetLanguage(const String& language)
{
    service->SetLanguage(language);
}

String LanguageTranslator::GetLanguage() const
{
    return service->GetLanguage();
}

Vector<String> LanguageTranslator::GetLanguages() const
{
    return service->GetLanguages();
}

String LanguageTranslator::ReverseTranslate(const String& text) const
{
    return service->ReverseTranslate(text);
}

void LanguageTranslator::SetMark(bool mark)
{
    service->SetMark(mark);
}

bool LanguageTranslator::GetMark() const
{
    return service->GetMark();
}

bool LanguageTranslator::IsLoaded() const
{
    return service->IsLoaded();
}

// Only the text of a failed load reaches the caller, as an ExceptionResourceNotAvailable of
// its own.
void LanguageTranslator::Load()
{
    try {
        service->Load();
    } catch (const ExceptionResourceNotAvailable& failure) {
        throw ExceptionResourceNotAvailable(*failure.Text());
    }
}

String LanguageTranslator::KeyAfterFailure(const String& key) const
{
    try {
        if (service->GetMark()) {
            return String("(") + key + String(")");
        }
    } catch (const Exception&) {
    }
    return key;
}

String Translated(const String& english)
{
    return LanguageTranslator().Translate(english);
}

String Translated(const char* english, const char* placeholder, const String& value)
{
    String message = Translated(english);
    message.Replace(String(placeholder), value);
    return message;
}

}
