#pragma once

#include "utilities/String.h"

namespace CMetry {

// A message of the colorimetry in the user's language. The template is translated first and its
// placeholder filled in afterwards, so that translators see one text whatever the value.
Utilities::String TranslatedMessage(const char* english);
Utilities::String TranslatedMessage(const char* english, const char* placeholder, const Utilities::String& value);

}
