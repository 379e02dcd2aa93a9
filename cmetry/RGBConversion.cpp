#include "cmetry/RGBConversion.h"

#include <array>

#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/ColorSpaceKeyword.h"
#include "cmetry/GammaTables.h"
#include "cmetry/VellumCMMScreen.h"
#include "utilities/ResolveAs.h"

namespace CMetry {

namespace {

// From XYZ on the scale Y = 100 to linear RGB on the scale 0 to 1.
constexpr std::array<std::array<float, 3>, 3> displayMatrix = {{
    {0.03065f, -0.01394f, -0.00476f},
    {-0.00969f, 0.01876f, 0.00042f},
    {0.00068f, -0.00229f, 0.0107f},
}};

// A component that fails counts as none.
bool ConvertedByScreenComponent(
    const HvColorVector& vector, const HvMeasureConditions& rgbConditions, HvColorVector& out)
{
    try {
        const Utilities::SmartPointer<VellumCMMScreen> screen =
            Utilities::ResolveAs<VellumCMMScreen>("VellumCMMScreen");
        if (screen.IsNull()) {
            return false;
        }
        out = screen->ConvertLabToRGB(vector);
        out.SetConditions(rgbConditions);
        return true;
    } catch (...) {
        return false;
    }
}

float Linear(const std::array<float, 3>& row, const HvColorVector& xyz)
{
    float sum = row[0] * xyz[0];
    sum += row[1] * xyz[1];
    sum += row[2] * xyz[2];
    return sum;
}

}

bool GetRGB(const HvColorVector& vector, HvColorVector& out)
{
    HvMeasureConditions rgbConditions = WithColorSpace(vector.GetConditions(), ColorSpaceKeyword::rgb);
    rgbConditions.CopyPhysicalFilter(vector.GetConditions());
    if (ConvertedByScreenComponent(vector, rgbConditions, out)) {
        return true;
    }
    HvColorVector xyz(vector[0], vector[1], vector[2], WithColorSpace(rgbConditions, ColorSpaceKeyword::cieXYZ));
    ConvertLabToXYZ(xyz, xyz);
    std::array<float, 3> codes;
    for (std::size_t channel = 0; channel < codes.size(); ++channel) {
        codes[channel] = GammaTables::Code(Linear(displayMatrix[channel], xyz));
    }
    out = HvColorVector(codes[0], codes[1], codes[2], rgbConditions);
    return true;
}

}
