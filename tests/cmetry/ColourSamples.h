#pragma once
// What the tests of the colour calculations share: some of the CIE test colour samples, flat
// spectra, and the text of a calculation's failure.

#include <array>
#include <string>

#include "cmetry/ExceptionCMetry.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "tests/utilities/FailureText.h"

namespace CMetryTest {

using Reflectance = std::array<float, 36>;

// CIE test colour samples at 380 to 730 nm in steps of 10 nm (colord-data, ref/CIE-TCS.sp): a
// greyish red, a strong yellow green, a light bluish green, a strong red and a strong blue.
inline constexpr Reflectance tcs01 = {0.22f, 0.25f, 0.26f, 0.25f, 0.24f, 0.24f, 0.23f, 0.23f, 0.22f, 0.22f, 0.21f,
    0.22f, 0.22f, 0.23f, 0.23f, 0.23f, 0.24f, 0.25f, 0.27f, 0.3f, 0.34f, 0.39f, 0.42f, 0.44f, 0.45f, 0.45f, 0.45f,
    0.45f, 0.45f, 0.45f, 0.46f, 0.46f, 0.46f, 0.46f, 0.47f, 0.47f};
inline constexpr Reflectance tcs03 = {0.07f, 0.07f, 0.07f, 0.07f, 0.07f, 0.07f, 0.07f, 0.07f, 0.08f, 0.09f, 0.11f,
    0.15f, 0.2f, 0.24f, 0.28f, 0.34f, 0.39f, 0.4f, 0.38f, 0.35f, 0.32f, 0.29f, 0.26f, 0.25f, 0.24f, 0.23f, 0.22f, 0.22f,
    0.22f, 0.23f, 0.25f, 0.29f, 0.34f, 0.39f, 0.43f, 0.46f};
inline constexpr Reflectance tcs05 = {0.3f, 0.31f, 0.31f, 0.32f, 0.33f, 0.33f, 0.35f, 0.36f, 0.38f, 0.4f, 0.42f, 0.42f,
    0.41f, 0.4f, 0.39f, 0.37f, 0.35f, 0.33f, 0.31f, 0.28f, 0.26f, 0.23f, 0.21f, 0.19f, 0.19f, 0.18f, 0.18f, 0.18f,
    0.18f, 0.18f, 0.19f, 0.19f, 0.2f, 0.2f, 0.2f, 0.2f};
inline constexpr Reflectance tcs09 = {0.066f, 0.058f, 0.052f, 0.051f, 0.050f, 0.048f, 0.046f, 0.042f, 0.038f, 0.033f,
    0.030f, 0.028f, 0.028f, 0.030f, 0.031f, 0.032f, 0.033f, 0.035f, 0.041f, 0.048f, 0.060f, 0.102f, 0.190f, 0.336f,
    0.505f, 0.641f, 0.717f, 0.758f, 0.781f, 0.797f, 0.809f, 0.819f, 0.828f, 0.831f, 0.835f, 0.836f};
inline constexpr Reflectance tcs12 = {0.12f, 0.09f, 0.08f, 0.06f, 0.08f, 0.12f, 0.21f, 0.3f, 0.35f, 0.34f, 0.31f, 0.26f,
    0.2f, 0.15f, 0.11f, 0.08f, 0.05f, 0.04f, 0.03f, 0.02f, 0.02f, 0.02f, 0.02f, 0.02f, 0.02f, 0.02f, 0.02f, 0.02f,
    0.02f, 0.03f, 0.04f, 0.06f, 0.1f, 0.17f, 0.26f, 0.35f};

inline CMetry::HvSpectrum SpectrumOf(
    const Reflectance& values, const CMetry::HvMeasureConditions& conditions = CMetry::HvMeasureConditions())
{
    return CMetry::HvSpectrum(values.data(), conditions);
}

inline CMetry::HvSpectrum Flat(float level)
{
    Reflectance values;
    values.fill(level);
    return SpectrumOf(values);
}

// A cyan ink: it absorbs the red end and lets the blue end through.
inline CMetry::HvSpectrum Cyan()
{
    Reflectance values;
    for (std::size_t index = 0; index < values.size(); ++index) {
        values[index] = index < 18 ? 0.7f : 0.05f;
    }
    return SpectrumOf(values);
}

template<class Call>
std::string CMetryFailure(Call call)
{
    return FailureText<CMetry::ExceptionCMetry>(call);
}

}
