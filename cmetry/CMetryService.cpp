#include "cmetry/CMetryService.h"

namespace CMetry {

Diagnostics::String CMetryService::GetValueString() const
{
    return Diagnostics::String("CMetryService");
}

}
