#include "manager/pavilo/Recognition.h"

namespace HviManager::PaviloDriver {

Recognition::~Recognition() = default;

}
