#include "utilities/ExceptionBusiness.h"

namespace Utilities {

ExceptionBusiness::~ExceptionBusiness() = default;

}
