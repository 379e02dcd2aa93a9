#pragma once

namespace CMetry::ConditionKey {

// The keys by which every layer addresses a condition: a group word, a point and a name.
inline constexpr char illumination[] = "Colorimetric.Illumination";
inline constexpr char observer[] = "Colorimetric.Observer";
inline constexpr char whiteBase[] = "Colorimetric.WhiteBase";
inline constexpr char densityStandard[] = "Colorimetric.DensityStandard";
inline constexpr char densityFilterMode[] = "Colorimetric.DensityFilterMode";
inline constexpr char physicalFilter[] = "Physical.Filter";
inline constexpr char numberOfDataPoints[] = "Physical.NumberOfDataPointsSpectrum";
inline constexpr char wavelengthMaximum[] = "Physical.WavelengthSpectrumMax";
inline constexpr char wavelengthMinimum[] = "Physical.WavelengthSpectrumMin";
inline constexpr char colorSpace[] = "ColorSpaceDescription.Type";
inline constexpr char absoluteOrDeltaVector[] = "ColorSpaceDescription.AbsoluteOrDeltaVector";
inline constexpr char deltaEFormula[] = "ColorSpaceDescription.DeltaEFormula";
// The channel names of a colour space stand under this prefix followed by its keyword.
inline constexpr char channelNamesPrefix[] = "ColorSpaceDescription.";
inline constexpr char customCondition[] = "CustomCondition";

}
