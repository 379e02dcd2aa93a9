#include "cmetry/TranslatedMessage.h"

#include "utilities/LanguageTranslator.h"

namespace CMetry {

using Utilities::String;

String TranslatedMessage(const char* english)
{
    return Utilities::Translated(english);
}

String TranslatedMessage(const char* english, const char* placeholder, const String& value)
{
    return Utilities::Translated(english, placeholder, value);
}

}
