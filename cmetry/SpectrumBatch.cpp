#include "cmetry/SpectrumBatch.h"

#include <algorithm>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/ColorDifference.h"
#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/ColorSpaceKeyword.h"
#include "cmetry/Density.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/PaperWhite.h"
#include "cmetry/TranslatedMessage.h"
#include "cmetry/Tristimulus.h"
#include "cmetry/WeightfactorCache.h"
#include "utilities/ExceptionOutOfBound.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace CMetry {

namespace {

constexpr std::size_t valuesPerSpectrum = SpectrumBatch::valuesPerSpectrum;
constexpr std::size_t perResult = SpectrumBatch::valuesPerResult;

[[noreturn]] void ThrowBatchCalculationFailed()
{
    throw ExceptionCMetry(TranslatedMessage("CMetryCalculator"));
}

HvMeasureConditions Effective(const HvMeasureConditions& conditions)
{
    HvMeasureConditions effective(conditions);
    if (conditions.GetIllumination().GetType() == Illumination::Emission) {
        effective.SetIllumination(IlluminationTYPE(Illumination::Emission));
    }
    return effective;
}

// The tristimulus sums of a block of spectra, one spectrum in each lane of a vector, with the same
// products and sums in the same order as for one spectrum alone: each product exact in double, each
// sum rounded to float before the next. Twelve sums run side by side so that the rounding steps
// don't wait for each other; more would spill out of the registers.
constexpr std::size_t blockSize = 16;
constexpr std::size_t groups = 4;
constexpr std::size_t transposedRows = 4;
using Columns = float[valuesPerSpectrum][blockSize];
using BlockSum = void (*)(const double*, const Columns&, float*);

#if defined(__x86_64__)
__attribute__((target("avx"))) void SumBlockWithAvx(const double* weights, const Columns& columns, float* out)
{
    constexpr std::size_t lanes = 4;
    __m256d sums[groups][perResult];
    for (auto& group : sums) {
        for (__m256d& sum : group) {
            sum = _mm256_setzero_pd();
        }
    }
    for (std::size_t index = 0; index < valuesPerSpectrum; ++index) {
#pragma GCC unroll 4
        for (std::size_t group = 0; group < groups; ++group) {
            const __m256d values = _mm256_cvtps_pd(_mm_load_ps(&columns[index][group * lanes]));
#pragma GCC unroll 3
            for (std::size_t axis = 0; axis < perResult; ++axis) {
                const __m256d product = _mm256_mul_pd(_mm256_broadcast_sd(&weights[index * perResult + axis]), values);
                sums[group][axis] = _mm256_cvtps_pd(_mm256_cvtpd_ps(_mm256_add_pd(sums[group][axis], product)));
            }
        }
    }
    for (std::size_t group = 0; group < groups; ++group) {
        for (std::size_t axis = 0; axis < perResult; ++axis) {
            alignas(32) double lanesOut[lanes];
            _mm256_store_pd(lanesOut, sums[group][axis]);
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                out[(group * lanes + lane) * perResult + axis] = static_cast<float>(lanesOut[lane]);
            }
        }
    }
}

// The same on the baseline instruction set, two lanes to a vector, in two halves of the block.
void SumBlock(const double* weights, const Columns& columns, float* out)
{
    constexpr std::size_t lanes = 2;
    for (std::size_t first = 0; first < blockSize; first += groups * lanes) {
        __m128d sums[groups][perResult];
        for (auto& group : sums) {
            for (__m128d& sum : group) {
                sum = _mm_setzero_pd();
            }
        }
        for (std::size_t index = 0; index < valuesPerSpectrum; ++index) {
#pragma GCC unroll 4
            for (std::size_t group = 0; group < groups; ++group) {
                const __m128 pair =
                    _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(&columns[index][first + group * lanes])));
                const __m128d values = _mm_cvtps_pd(pair);
#pragma GCC unroll 3
                for (std::size_t axis = 0; axis < perResult; ++axis) {
                    const __m128d product = _mm_mul_pd(_mm_set1_pd(weights[index * perResult + axis]), values);
                    sums[group][axis] = _mm_cvtps_pd(_mm_cvtpd_ps(_mm_add_pd(sums[group][axis], product)));
                }
            }
        }
        for (std::size_t group = 0; group < groups; ++group) {
            for (std::size_t axis = 0; axis < perResult; ++axis) {
                alignas(16) double lanesOut[lanes];
                _mm_store_pd(lanesOut, sums[group][axis]);
                for (std::size_t lane = 0; lane < lanes; ++lane) {
                    out[(first + group * lanes + lane) * perResult + axis] = static_cast<float>(lanesOut[lane]);
                }
            }
        }
    }
}

// Four spectra into the columns from lane on, four values at a time.
void Transpose(const std::array<const float*, transposedRows>& rows, std::size_t lane, Columns& columns)
{
    for (std::size_t index = 0; index < valuesPerSpectrum; index += transposedRows) {
        __m128 row0 = _mm_loadu_ps(rows[0] + index);
        __m128 row1 = _mm_loadu_ps(rows[1] + index);
        __m128 row2 = _mm_loadu_ps(rows[2] + index);
        __m128 row3 = _mm_loadu_ps(rows[3] + index);
        _MM_TRANSPOSE4_PS(row0, row1, row2, row3);
        _mm_store_ps(&columns[index][lane], row0);
        _mm_store_ps(&columns[index + 1][lane], row1);
        _mm_store_ps(&columns[index + 2][lane], row2);
        _mm_store_ps(&columns[index + 3][lane], row3);
    }
}

BlockSum ChooseBlockSum()
{
    static const BlockSum chosen = __builtin_cpu_supports("avx") ? SumBlockWithAvx : SumBlock;
    return chosen;
}
#else
// One spectrum after another where no vectors of doubles are known.
void SumBlock(const double* weights, const Columns& columns, float* out)
{
    for (std::size_t spectrum = 0; spectrum < blockSize; ++spectrum) {
        for (std::size_t axis = 0; axis < perResult; ++axis) {
            float sum = 0.0f;
            for (std::size_t index = 0; index < valuesPerSpectrum; ++index) {
                sum += weights[index * perResult + axis] * columns[index][spectrum];
            }
            out[spectrum * perResult + axis] = sum;
        }
    }
}

void Transpose(const std::array<const float*, transposedRows>& rows, std::size_t lane, Columns& columns)
{
    for (std::size_t row = 0; row < transposedRows; ++row) {
        for (std::size_t index = 0; index < valuesPerSpectrum; ++index) {
            columns[index][lane + row] = rows[row][index];
        }
    }
}

BlockSum ChooseBlockSum()
{
    return SumBlock;
}
#endif

// The weights of the three axes side by side, in double.
std::array<double, valuesPerSpectrum * perResult> WeightsOf(const Weightfactors& weightfactors)
{
    std::array<double, valuesPerSpectrum * perResult> weights;
    for (uint16_t axis = 0; axis < perResult; ++axis) {
        const std::span<const float> axisWeights = weightfactors.GetWeights(axis);
        for (std::size_t index = 0; index < valuesPerSpectrum; ++index) {
            weights[index * perResult + axis] = axisWeights[index];
        }
    }
    return weights;
}

void WriteTristimulus(const Weightfactors& weightfactors, const float* values, float* out)
{
    const std::array<float, perResult> xyz = Tristimulus(weightfactors, values);
    std::copy(xyz.begin(), xyz.end(), out);
}

void WriteLab(const WhitePoint& white, float* values)
{
    const std::array<double, perResult> lab = LabOf(values, white);
    for (std::size_t axis = 0; axis < perResult; ++axis) {
        values[axis] = static_cast<float>(lab[axis]);
    }
}

void WritePolar(float* values)
{
    const std::array<double, perResult> polar = PolarOf(values);
    for (std::size_t axis = 0; axis < perResult; ++axis) {
        values[axis] = static_cast<float>(polar[axis]);
    }
}

}

SpectrumBatch::SpectrumBatch(const HvMeasureConditions& conditions)
    : conditions(conditions), effective(Effective(conditions)),
      dividedByPaperWhite(effective.GetIllumination().GetType() != Illumination::Emission &&
          effective.GetWhiteBase() == WhiteBase::Paper),
      weightfactors(WeightfactorCache::Update(effective))
{
}

void SpectrumBatch::GetXYZ(std::span<const float> spectra, std::span<float> xyz) const
{
    Check(spectra, xyz, perResult);
    const Values paperWhite = PaperWhite();
    const std::size_t count = spectra.size() / valuesPerSpectrum;
    std::array<Values, transposedRows> relative;
    const std::array<double, valuesPerSpectrum* perResult> weights = WeightsOf(*weightfactors);
    const BlockSum sumBlock = ChooseBlockSum();
    std::size_t index = 0;
    for (; index + blockSize <= count; index += blockSize) {
        alignas(32) Columns columns;
        for (std::size_t lane = 0; lane < blockSize; lane += transposedRows) {
            std::array<const float*, transposedRows> rows;
            for (std::size_t row = 0; row < transposedRows; ++row) {
                rows[row] = Relative(&spectra[(index + lane + row) * valuesPerSpectrum], paperWhite, relative[row]);
            }
            Transpose(rows, lane, columns);
        }
        sumBlock(weights.data(), columns, &xyz[index * perResult]);
    }
    for (; index < count; ++index) {
        const float* values = Relative(&spectra[index * valuesPerSpectrum], paperWhite, relative[0]);
        WriteTristimulus(*weightfactors, values, &xyz[index * perResult]);
    }
}

void SpectrumBatch::GetLab(std::span<const float> spectra, std::span<float> lab) const
{
    GetXYZ(spectra, lab);
    const WhitePoint white = WhiteOf(*weightfactors);
    for (std::size_t index = 0; index < spectra.size() / valuesPerSpectrum; ++index) {
        WriteLab(white, &lab[index * perResult]);
    }
}

void SpectrumBatch::GetVectors(std::span<const float> spectra, std::span<float> vectors) const
{
    const Utilities::String& colorSpace = conditions.GetColorSpace();
    if (ColorSpaceKeyword::Is(colorSpace, ColorSpaceKeyword::cieXYZ)) {
        GetXYZ(spectra, vectors);
        return;
    }
    const bool polar = ColorSpaceKeyword::Is(colorSpace, ColorSpaceKeyword::cieLCh);
    if (polar || ColorSpaceKeyword::Is(colorSpace, ColorSpaceKeyword::cieLab)) {
        GetLab(spectra, vectors);
        for (std::size_t index = 0; polar && index < spectra.size() / valuesPerSpectrum; ++index) {
            WritePolar(&vectors[index * perResult]);
        }
        return;
    }
    Check(spectra, vectors, perResult);
    for (std::size_t index = 0; index < spectra.size() / valuesPerSpectrum; ++index) {
        const HvColorVector vector = CMetryCalculator::GetVector(SpectrumAt(spectra, index), conditions);
        for (uint16_t axis = 0; axis < perResult; ++axis) {
            vectors[index * perResult + axis] = vector[axis];
        }
    }
}

void SpectrumBatch::GetDensities(std::span<const float> spectra, std::span<float> densities) const
{
    Check(spectra, densities, 1);
    for (std::size_t index = 0; index < densities.size(); ++index) {
        densities[index] = GetDensity(SpectrumAt(spectra, index), conditions);
    }
}

void SpectrumBatch::GetDeltaE(const float* reference, std::span<const float> spectra, std::span<float> deltaE,
    std::array<float, 3> parameters) const
{
    Check(spectra, deltaE, 1);
    const HvSpectrum standard(reference, conditions);
    for (std::size_t index = 0; index < deltaE.size(); ++index) {
        deltaE[index] = ColorDifference::GetDeltaE(
            standard, SpectrumAt(spectra, index), conditions, parameters[0], parameters[1], parameters[2]);
    }
}

const float* SpectrumBatch::Relative(const float* spectrum, const Values& paperWhite, Values& relative) const
{
    if (!dividedByPaperWhite) {
        return spectrum;
    }
    for (std::size_t index = 0; index < valuesPerSpectrum; ++index) {
        relative[index] = static_cast<float>(static_cast<double>(spectrum[index]) / paperWhite[index]);
    }
    return relative.data();
}

SpectrumBatch::Values SpectrumBatch::PaperWhite() const
{
    Values paperWhite{};
    if (dividedByPaperWhite && !GetPaperWhiteValues(paperWhite.data())) {
        ThrowBatchCalculationFailed();
    }
    return paperWhite;
}

void SpectrumBatch::Check(std::span<const float> spectra, std::span<float> results, std::size_t perResultCount) const
{
    if (spectra.size() % valuesPerSpectrum != 0 ||
        results.size() != spectra.size() / valuesPerSpectrum * perResultCount) {
        throw Utilities::ExceptionOutOfBound("spectra and results of different counts");
    }
}

HvSpectrum SpectrumBatch::SpectrumAt(std::span<const float> spectra, std::size_t index) const
{
    return HvSpectrum(&spectra[index * valuesPerSpectrum], conditions);
}

}
