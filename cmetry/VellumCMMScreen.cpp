#include "cmetry/VellumCMMScreen.h"

namespace CMetry {

VellumCMMScreen::~VellumCMMScreen() = default;

}
