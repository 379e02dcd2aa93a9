#include "driver/DriverCalculation.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "diagnostics/String.h"
#include "driver/DataMember.h"
#include "driver/RecordIds.h"
#include "driver/WhiteTileWindow.h"
#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

using Utilities::ExceptionOutOfBound;
using Utilities::String;
using Utilities::Vector;

namespace {

constexpr const char* darkPrefix = "Dark calculation: ";
constexpr const char* whitePrefix = "White calculation: ";
constexpr const char* referencePrefix = "Reference calculation: ";
constexpr const char* samplePrefix = "Sample calculation: ";

constexpr uint16_t saturatedPixelsAllowed = 10;
constexpr float levelTolerance = 0.05f;
constexpr float consistencyTolerance = 0.05f;

// Wavelength indices of the white check: 550 nm, 380 and 390 nm, 600 to 650 nm.
constexpr unsigned long normalisingIndex = 17;
constexpr unsigned long firstBlueIndex = 0;
constexpr unsigned long blueCount = 2;
constexpr unsigned long firstRedIndex = 22;
constexpr unsigned long redCount = 6;

// The same text as the getters of ConfigurationData give for a missing record.
[[noreturn]] void RaiseMissingRecord(uint16_t id)
{
    throw ExceptionOutOfBound(String("Requested data is not available (ID ") + DataMap::KeyOf(id) + String(")"));
}

bool IsMode(const String& mode, const char* name)
{
    return std::strcmp(mode.CString(), name) == 0;
}

// Added up pixel by pixel in float, as the check has always done.
float MeanOfRow(const Vector<long>& row)
{
    if (row.Size() == 0) {
        throw ExceptionOutOfBound("Devision by zero");
    }
    float sum = 0.0f;
    for (unsigned long pixel = 0; pixel < row.Size(); ++pixel) {
        sum += static_cast<float>(row[pixel]);
    }
    return sum / static_cast<float>(row.Size());
}

float SumOf(const Vector<float>& values, unsigned long first, unsigned long count)
{
    float sum = 0.0f;
    for (unsigned long i = first; i < first + count; ++i) {
        sum += values[i];
    }
    return sum;
}

}

DriverCalculation::DriverCalculation() = default;

DriverCalculation::DriverCalculation(const ConfigurationData& calibration)
{
    DataMap::operator=(calibration);
}

DriverCalculation::~DriverCalculation() = default;

void DriverCalculation::RaiseEmptied(const char* prefix, const ExceptionOutOfBound& failure, BasicData& filled)
{
    filled.Resize(0);
    throw ExceptionOutOfBound(String(prefix) + *failure.Text());
}

void DriverCalculation::CalculateDark(SensorData& sensor)
{
    try {
        DarkSteps(sensor);
    } catch (const ExceptionOutOfBound& failure) {
        RaiseEmptied(darkPrefix, failure, dark);
    }
}

void DriverCalculation::DarkSteps(SensorData& sensor)
{
    sensor.Mean();
    sensor.Linearize(Linearisation(sensor.Gain()));
    dark = sensor;
    dark.SetDarkLevel(static_cast<int32_t>(sensor.MeanRaw()));
    if (!dark.IsValid(U32Record(CalibrationRecords::darkLimit))) {
        throw ExceptionOutOfBound("Data is not valid");
    }
}

bool DriverCalculation::CalculateWhite(SensorData& sensor, uint16_t& filter, bool takeMean, float levelFactor)
{
    bool levelIsRight = false;
    try {
        levelIsRight = WhiteSteps(sensor, filter, takeMean, levelFactor);
    } catch (const ExceptionOutOfBound& failure) {
        RaiseEmptied(whitePrefix, failure, white);
    }
    if (!white.IsValid()) {
        throw ExceptionOutOfBound("White calculation: Data is not valid");
    }
    return levelIsRight;
}

bool DriverCalculation::WhiteSteps(SensorData& sensor, uint16_t& filter, bool takeMean, float levelFactor)
{
    if (!CheckConsistency(sensor)) {
        throw ExceptionOutOfBound("Data is not consistent");
    }
    if (!CheckWhite(sensor, filter)) {
        throw ExceptionOutOfBound("White check failed");
    }
    if (takeMean) {
        sensor.Mean();
    }
    sensor.Linearize(Linearisation(sensor.Gain()));
    SubtractDarkFromEachRow(sensor);
    FoldIntoWavelengths(sensor);
    white = sensor;
    TurnWhiteIntoCorrection();
    return LevelIsRight(sensor, levelFactor);
}

bool DriverCalculation::CalculateReference(SensorData& sensor)
{
    bool levelIsRight = false;
    try {
        levelIsRight = ReferenceSteps(sensor);
    } catch (const ExceptionOutOfBound& failure) {
        RaiseEmptied(referencePrefix, failure, reference);
    }
    if (!reference.IsValid()) {
        throw ExceptionOutOfBound("Reference calculation: Data is not valid");
    }
    return levelIsRight;
}

bool DriverCalculation::ReferenceSteps(SensorData& sensor)
{
    sensor.Mean();
    Prepare(sensor);
    FoldIntoWavelengths(sensor);
    reference = sensor;
    return LevelIsRight(sensor, 1.0f);
}

void DriverCalculation::CalculateSample(SensorData& sensor, SpectrumData& result, const String& mode)
{
    try {
        SampleSteps(sensor, result, mode);
    } catch (const ExceptionOutOfBound& failure) {
        RaiseEmptied(samplePrefix, failure, result);
    }
    if (!result.IsValid()) {
        throw ExceptionOutOfBound("Sample calculation: Data is not valid");
    }
}

void DriverCalculation::SampleSteps(SensorData& sensor, SpectrumData& result, const String& mode)
{
    sensor.Mean();
    Prepare(sensor);
    FoldIntoWavelengths(sensor);
    ApplyModeCorrection(sensor, mode);
    result = sensor;
}

void DriverCalculation::Prepare(SensorData& sensor) const
{
    sensor.Linearize(Linearisation(sensor.Gain()));
    RequireDark();
    sensor.Subtract(dark);
}

void DriverCalculation::SubtractDarkFromEachRow(SensorData& sensor) const
{
    sensor.FirstRow();
    RequireDark();
    for (unsigned long row = 0; row < sensor.RowCount(); ++row) {
        sensor.Subtract(dark);
        sensor.NextRow();
    }
}

void DriverCalculation::RequireDark() const
{
    if (!dark.IsValid()) {
        throw ExceptionOutOfBound("Dark data not valid");
    }
}

void DriverCalculation::FoldIntoWavelengths(SensorData& sensor) const
{
    const Vector<long>& firstPixels = U32VectorRecord(CalibrationRecords::matrixFirstPixel);
    const Vector<long>& pixelCounts = U32VectorRecord(CalibrationRecords::matrixPixelCount);
    const Vector<float>& coefficients = FloatVectorRecord(CalibrationRecords::matrixCoefficients);
    sensor.MatrixMultiply(firstPixels, pixelCounts, coefficients);
}

// Each element becomes the factor that brings the tile's measurement to its known reflectance.
// The white is back on its first row afterwards, so that a strip starts with it.
void DriverCalculation::TurnWhiteIntoCorrection()
{
    if (!white.IsValid()) {
        throw ExceptionOutOfBound("Invalid white data");
    }
    const Vector<float>& tile = FloatVectorRecord(CalibrationRecords::tileReflectance);
    white.FirstRow();
    for (unsigned long row = 0; row < white.RowCount(); ++row) {
        Vector<float> factors = white.Load();
        if (tile.Size() != factors.Size()) {
            throw ExceptionOutOfBound("Unable to calculate white correction");
        }
        for (unsigned long i = 0; i < factors.Size(); ++i) {
            if (factors[i] == 0.0f) {
                throw ExceptionOutOfBound("Unable to calculate white correction (division by zero)");
            }
            factors[i] = tile[i] / factors[i];
        }
        white.Store(factors);
        white.NextRow();
    }
    white.FirstRow();
}

void DriverCalculation::ApplyModeCorrection(SensorData& sensor, const String& mode)
{
    if (IsMode(mode, "Remission")) {
        if (!white.IsValid()) {
            throw ExceptionOutOfBound("White data not valid");
        }
        sensor.Multiply(white);
        white.NextRow();
    } else if (IsMode(mode, "Emission")) {
        ApplyRadianceFactors(sensor, false);
    } else if (IsMode(mode, "AmbientLight")) {
        ApplyRadianceFactors(sensor, true);
    } else if (IsMode(mode, "Transmission")) {
        if (!reference.IsValid()) {
            throw ExceptionOutOfBound("Reference data not valid");
        }
        sensor.Divide(reference);
    } else {
        throw ExceptionOutOfBound("Unknown measure mode");
    }
}

// The factors of record 1101 are per count and second at the less sensitive gain; ambient light
// is further turned from radiance into irradiance by record 1102. They take the white's place.
void DriverCalculation::ApplyRadianceFactors(SensorData& sensor, bool ambientLight)
{
    Vector<float> factors = FloatVectorRecord(CalibrationRecords::emissionFactors);
    const Vector<float> noFactors(0);
    const Vector<float>& ambientFactors =
        ambientLight ? FloatVectorRecord(CalibrationRecords::ambientLightFactors) : noFactors;
    const float gainFactor = sensor.Gain() != 0 ? 1.0f : FloatRecord(CalibrationRecords::gainRatio);
    const float time = sensor.IntegrationTime();
    for (unsigned long i = 0; i < factors.Size(); ++i) {
        factors[i] = factors[i] / time;
        factors[i] = factors[i] / gainFactor;
        if (ambientLight) {
            factors[i] = factors[i] * ambientFactors[i];
        }
    }
    WhiteData radianceFactors;
    radianceFactors.Resize(1);
    radianceFactors.Store(factors);
    radianceFactors.SetGain(sensor.Gain());
    radianceFactors.SetIntegrationTime(time);
    white = radianceFactors;
    sensor.Multiply(white);
}

// The target level is truncated; the tolerance is the float 0.05, a little above 0.05, widened.
bool DriverCalculation::LevelIsRight(const SensorData& sensor, float levelFactor) const
{
    const long maximum = sensor.MaxRaw();
    const int32_t target = TargetLevel(levelFactor);
    const double distance = std::abs(static_cast<double>(maximum) - static_cast<double>(target));
    return distance < static_cast<double>(target) * static_cast<double>(levelTolerance);
}

bool DriverCalculation::IsSaturated(const SensorData& sensor) const
{
    const uint32_t level =
        U32Record(sensor.Gain() != 0 ? CalibrationRecords::saturationGain1 : CalibrationRecords::saturationGain0);
    return sensor.IsSaturated(static_cast<long>(level), saturatedPixelsAllowed);
}

bool DriverCalculation::CheckConsistency(const SensorData& sensor) const
{
    if (!sensor.HasRaw() || sensor.Raw().Size() < 2) {
        return true;
    }
    const Vector<Vector<long>>& rows = sensor.Raw();
    const float firstMean = MeanOfRow(rows[0]);
    if (firstMean == 0.0f) {
        throw ExceptionOutOfBound("Devision by zero");
    }
    for (unsigned long row = 1; row < rows.Size(); ++row) {
        const float deviation = (firstMean - MeanOfRow(rows[row])) / firstMean;
        if (std::fabs(static_cast<double>(deviation)) > static_cast<double>(consistencyTolerance)) {
            return false;
        }
    }
    return true;
}

bool DriverCalculation::CheckWhite(const SensorData& sensor, uint16_t& filter)
{
    float blueEnd = 0.0f;
    float redEnd = 0.0f;
    MeasureTileEnds(sensor, blueEnd, redEnd);
    const WhiteTileWindow window = WhiteTileWindow::ForCheckKind(U32Record(CalibrationRecords::whiteCheckKind));
    if (window.Contains(blueEnd, redEnd)) {
        filter = window.Filter();
        return true;
    }
    filter = WhiteTileWindow::noFilter;
    return false;
}

// The tile seen as an emission, divided by its own reflectance and normalised at 550 nm, is the
// lamp as the filter lets it through. The emission sample replaces the white for a moment.
void DriverCalculation::MeasureTileEnds(const SensorData& sensor, float& blueEnd, float& redEnd)
{
    const WhiteData remembered = white;
    SensorData work(sensor);
    SpectrumData spectrum;
    try {
        CalculateSample(work, spectrum, "Emission");
    } catch (const ExceptionOutOfBound&) {
        white = remembered;
        throw;
    }
    white = remembered;
    Vector<float> lamp = spectrum.Load();
    NormaliseToTile(lamp);
    blueEnd = std::fabs(SumOf(lamp, firstBlueIndex, blueCount)) / static_cast<float>(blueCount);
    redEnd = std::fabs(SumOf(lamp, firstRedIndex, redCount)) / static_cast<float>(redCount);
}

void DriverCalculation::NormaliseToTile(Vector<float>& spectrum) const
{
    const Vector<float>& tile = FloatVectorRecord(CalibrationRecords::tileReflectance);
    if (tile[normalisingIndex] == 0.0f) {
        throw ExceptionOutOfBound("Devision by zero");
    }
    const float norm = spectrum[normalisingIndex] / tile[normalisingIndex];
    if (norm == 0.0f) {
        throw ExceptionOutOfBound("Devision by zero");
    }
    for (unsigned long i = 0; i < spectrum.Size(); ++i) {
        if (tile[i] == 0.0f) {
            throw ExceptionOutOfBound("Devision by zero");
        }
        spectrum[i] = spectrum[i] / tile[i] / norm;
    }
}

float DriverCalculation::NewIntegrationTime(
    const SensorData& sensor, float presentTime, float levelFactor, bool strict) const
{
    const Vector<float> linear = LinearValues(sensor.Gain(), sensor.MaxRaw(), TargetLevel(levelFactor));
    const float linearMaximum = linear[0];
    const float linearTarget = linear[1];
    if (linearMaximum == 0.0f) {
        throw ExceptionOutOfBound("New integration time: Division by zero");
    }
    float time = static_cast<float>(
        static_cast<double>(presentTime) * static_cast<double>(linearTarget) / static_cast<double>(linearMaximum));
    if (time < 0.0f && strict) {
        throw ExceptionOutOfBound("New integration time: No light");
    }
    const float longest = FloatRecord(CalibrationRecords::longestIntegrationTime);
    const float shortest = MinIntegrationTime();
    if (time > longest) {
        if (strict && time / levelFactor > longest) {
            throw ExceptionOutOfBound("New integration time: Too little light");
        }
        time = longest;
    }
    if (time < shortest) {
        if (strict && time / levelFactor < shortest) {
            throw ExceptionOutOfBound("New integration time: Too much light");
        }
        time = shortest;
    }
    return time;
}

float DriverCalculation::MinIntegrationTime() const
{
    return FloatRecord(CalibrationRecords::shortestIntegrationTime);
}

int32_t DriverCalculation::TargetLevel(float levelFactor) const
{
    return static_cast<int32_t>(
        static_cast<double>(U32Record(CalibrationRecords::targetLevel)) * static_cast<double>(levelFactor));
}

// Two raw values through the linearisation of the gain, by the same rule as a measurement.
Vector<float> DriverCalculation::LinearValues(uint32_t gain, long first, long second) const
{
    Vector<long> pixels(2);
    pixels[0] = first;
    pixels[1] = second;
    Vector<Vector<long>> raw(1);
    raw[0] = pixels;
    SensorData values;
    values.SetRaw(raw);
    values.Linearize(Linearisation(gain));
    return values.Load();
}

const Vector<float>& DriverCalculation::Linearisation(uint32_t gain) const
{
    return FloatVectorRecord(
        gain != 0 ? CalibrationRecords::linearisationGain1 : CalibrationRecords::linearisationGain0);
}

uint32_t DriverCalculation::U32Record(uint16_t id) const
{
    uint32_t value = 0;
    GetU32(id, value);
    return value;
}

float DriverCalculation::FloatRecord(uint16_t id) const
{
    float value = 0.0f;
    GetFloat(id, value);
    return value;
}

// The calculation reads its large records in place rather than copying them for every sample.
const Vector<float>& DriverCalculation::FloatVectorRecord(uint16_t id) const
{
    const DataMember* record = FindItem(id);
    if (record == nullptr) {
        RaiseMissingRecord(id);
    }
    return record->Floats();
}

const Vector<long>& DriverCalculation::U32VectorRecord(uint16_t id) const
{
    const DataMember* record = FindItem(id);
    if (record == nullptr) {
        RaiseMissingRecord(id);
    }
    return record->Integers();
}

Diagnostics::String DriverCalculation::GetValueString() const
{
    return Diagnostics::String("DriverCalculation");
}

}
