#include "cmetry/TranslatedMessage.h"

#include "utilities/LanguageTranslator.h"

namespace CMetry {

using Utilities::String;

String TranslatedMessage(const char* english)
{
    return Utilities::LanguageTranslator().Translate(String(english));
}

String TranslatedMessage(const char* english, const char* placeholder, const String& value)
{
    String message = TranslatedMessage(english);
    message.Replace(String(placeholder), value);
    return message;
}

}
