#include "manager/ExceptionHviModule.h"

namespace HviManager {

ExceptionHviModule::~ExceptionHviModule() = default;

}
