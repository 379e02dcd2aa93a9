#include "manager/MessageService.h"

namespace GUI {

MessageService::~MessageService() = default;

}
