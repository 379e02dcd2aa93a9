#include "utilities/LanguageService.h"

namespace Utilities {

LanguageService::~LanguageService() = default;

}
