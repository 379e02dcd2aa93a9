#include "plugins/screen/SRGBScreen.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/DllLoader.h"

// Offers the sRGB conversion under "VellumCMMScreen" for as long as the module stays loaded.
ORBEL_PLUGIN_EXPORT void ORBEL_PLUGIN_ENTRY(Utilities::ComponentRegistry& registry)
{
    static Utilities::ComponentCreatorSingleton<Plugins::SRGBScreen> creator(
        registry, "VellumCMMScreen", "$Revision: 1.0 $", "CMetry");
}
