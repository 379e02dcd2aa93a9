#include "plugins/screen/SRGBScreen.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/DllLoader.h"

// Offers the sRGB conversion under "VellumCMMScreen" for as long as the module stays loaded.
namespace {

void Register(Utilities::ComponentRegistry& registry)
{
    static Utilities::ComponentCreatorSingleton<Plugins::SRGBScreen> creator(
        registry, "VellumCMMScreen", "$Revision: 1.0 $", "CMetry");
}

}

ORBEL_PLUGIN_ENTRY(Register)
