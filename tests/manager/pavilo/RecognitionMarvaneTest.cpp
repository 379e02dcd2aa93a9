#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "cmetry/ColorDifference.h"
#include "cmetry/HvSpectrum.h"
#include "manager/pavilo/RecognitionMarvane.h"
#include "utilities/Exception.h"
#include "utilities/String.h"

namespace {

using DeviceDriver::SpectrumData;
using HviManager::PaviloDriver::RecognitionElement;
using HviManager::PaviloDriver::RecognitionMarvane;
using Utilities::Vector;

SpectrumData Measurement(float value, unsigned long length = 36)
{
    Vector<float> row(length);
    for (unsigned long index = 0; index < length; ++index) {
        row[index] = value;
    }
    SpectrumData data;
    data.Resize(1);
    data.Store(row);
    return data;
}

// Elements whose spectrum is their index and whose differences sum to the given values.
std::vector<RecognitionElement> SeriesOfDifferences(const std::vector<float>& sums)
{
    std::vector<RecognitionElement> series;
    for (size_t index = 0; index < sums.size(); ++index) {
        RecognitionElement element(Measurement(static_cast<float>(index)));
        element.SetGain(static_cast<uint32_t>(index));
        element.SetForwardDifference(sums[index] / 2.0f);
        element.SetBackwardDifference(sums[index] / 2.0f);
        series.push_back(element);
    }
    return series;
}

// Paper margins at 0 and 19 with an edge of the given differences between.
std::vector<float> StripWithEdge(const std::vector<std::pair<size_t, float>>& edgeElements)
{
    std::vector<float> sums(20, 0.0f);
    sums[0] = 8.0f;
    sums[19] = 8.0f;
    for (const auto& [index, sum] : edgeElements) {
        sums[index] = sum;
    }
    return sums;
}

std::string TextOfFailure(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Utilities::Exception& failure) {
        return failure.Text()->CString();
    }
    return "no failure";
}

// A printed strip drawn across: fields of the given grey and number of clean measurements, paper
// margins included, with two blended measurements at each border.
Vector<SpectrumData> DrawnFields(const std::vector<std::pair<float, size_t>>& fields)
{
    std::vector<float> values;
    for (size_t field = 0; field < fields.size(); ++field) {
        const float level = fields[field].first;
        if (field > 0) {
            const float previous = fields[field - 1].first;
            values.push_back(previous * 0.7f + level * 0.3f);
            values.push_back(previous * 0.3f + level * 0.7f);
        }
        values.insert(values.end(), fields[field].second, level);
    }
    Vector<SpectrumData> scan(values.size());
    for (size_t index = 0; index < values.size(); ++index) {
        scan[index] = Measurement(values[index]);
    }
    return scan;
}

// Fields of the given grey between paper margins, all drawn evenly.
Vector<SpectrumData> DrawnStrip(const std::vector<float>& fields, size_t perField)
{
    std::vector<std::pair<float, size_t>> layout{{0.85f, perField}};
    for (const float level : fields) {
        layout.emplace_back(level, perField);
    }
    layout.emplace_back(0.85f, perField);
    return DrawnFields(layout);
}

TEST(RecognitionMarvaneTest, EdgesLieAtTheCentreOfGravityOfTheirDifferences)
{
    RecognitionMarvane recognition;
    recognition.LocateEdges(SeriesOfDifferences(StripWithEdge({{10, 10.0f}, {11, 20.0f}, {12, 10.0f}})));

    EXPECT_FLOAT_EQ(recognition.Threshold(), 3.0f);
    ASSERT_EQ(recognition.Edges().size(), 3u);
    EXPECT_FLOAT_EQ(recognition.Edges()[0], 0.0f);
    EXPECT_FLOAT_EQ(recognition.Edges()[1], 11.0f);
    EXPECT_FLOAT_EQ(recognition.Edges()[2], 19.0f);

    const Vector<SpectrumData> patches = RecognitionMarvane::AverageFields(recognition.Elements(), recognition.Edges());
    ASSERT_EQ(patches.Size(), 2u);
    EXPECT_FLOAT_EQ(patches[0].Load()[0], 5.5f);
    EXPECT_FLOAT_EQ(patches[1].Load()[35], 15.0f);
}

TEST(RecognitionMarvaneTest, OneQuietElementJoinsAnEdgeAndTwoSplitIt)
{
    RecognitionMarvane bridged;
    bridged.LocateEdges(SeriesOfDifferences(StripWithEdge({{10, 20.0f}, {12, 20.0f}})));
    ASSERT_EQ(bridged.Edges().size(), 3u);
    EXPECT_FLOAT_EQ(bridged.Edges()[1], 11.0f);
    EXPECT_TRUE(bridged.Elements()[11].IsEdge());

    RecognitionMarvane split;
    split.LocateEdges(SeriesOfDifferences(StripWithEdge({{10, 20.0f}, {13, 20.0f}})));
    ASSERT_EQ(split.Edges().size(), 4u);
    EXPECT_FLOAT_EQ(split.Edges()[1], 10.0f);
    EXPECT_FLOAT_EQ(split.Edges()[2], 13.0f);
}

TEST(RecognitionMarvaneTest, ThresholdIsHalfTheMeanDifferenceButNeverBelowTheNoise)
{
    RecognitionMarvane strong;
    strong.LocateEdges(SeriesOfDifferences({40.0f, 8.0f, 40.0f, 8.0f}));
    EXPECT_FLOAT_EQ(strong.Threshold(), 6.0f);

    RecognitionMarvane exactStep;
    EXPECT_EQ(TextOfFailure([&] { exactStep.LocateEdges(SeriesOfDifferences(std::vector<float>(12, 6.0f))); }),
        "No patches found");

    std::vector<RecognitionElement> fading = SeriesOfDifferences({4.0f, 4.0f, 4.0f, 20.0f, 20.0f});
    for (size_t index = 0; index < 3; ++index) {
        fading[index].SetLab({2.0f * static_cast<float>(index), 0.0f, 0.0f});
    }
    RecognitionMarvane slowHand;
    EXPECT_EQ(TextOfFailure([&] { slowHand.LocateEdges(fading); }), "Margin is not uniform");

    RecognitionMarvane trimmed;
    trimmed.LocateEdges(SeriesOfDifferences({6.0f, 6.0f, 7.0f, 6.0f, 6.0f}));
    ASSERT_EQ(trimmed.Elements().size(), 1u);
    EXPECT_FLOAT_EQ(trimmed.Elements()[0].ForwardDifference(), 3.5f);
}

TEST(RecognitionMarvaneTest, FieldsAreTheMiddleThirdBetweenEdges)
{
    std::vector<RecognitionElement> series = SeriesOfDifferences(std::vector<float>(20, 0.0f));

    const Vector<SpectrumData> patches = RecognitionMarvane::AverageFields(series, {10.0f, 16.0f});
    ASSERT_EQ(patches.Size(), 1u);
    EXPECT_FLOAT_EQ(patches[0].Load()[0], 13.0f);
    EXPECT_EQ(patches[0].Gain(), 12u);
    EXPECT_EQ(patches[0].RowCount(), 1u);

    EXPECT_EQ(TextOfFailure([&] { RecognitionMarvane::AverageFields(series, {10.0f, 10.5f}); }), "Field is too small");
    EXPECT_EQ(TextOfFailure([&] { RecognitionMarvane::AverageFields(series, {}); }), "vector index >= vector size");
    EXPECT_EQ(RecognitionMarvane::AverageFields(series, {5.0f}).Size(), 0u);

    EXPECT_EQ(TextOfFailure([&] {
        RecognitionMarvane::AverageFields(series, {10.0f, 12.0f});
    }),
        "Field is not uniform");
    series[14].SetLab({3.5f, 0.0f, 0.0f});
    EXPECT_EQ(TextOfFailure([&] {
        RecognitionMarvane::AverageFields(series, {10.0f, 16.0f});
    }),
        "Field is not uniform");
}

TEST(RecognitionMarvaneTest, RecognizesTheFieldsOfADrawnStrip)
{
    RecognitionMarvane recognition;
    Vector<SpectrumData> patches(0);
    ASSERT_TRUE(recognition.Recognize(DrawnStrip({0.2f, 0.6f, 0.05f}, 15), patches));

    ASSERT_EQ(patches.Size(), 3u);
    EXPECT_FLOAT_EQ(patches[0].Load()[0], 0.2f);
    EXPECT_FLOAT_EQ(patches[1].Load()[17], 0.6f);
    EXPECT_FLOAT_EQ(patches[2].Load()[35], 0.05f);

    CMetry::HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", "D50");
    conditions.SetCondition("Colorimetric.Observer", "TwoDegree");
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    conditions.SetCondition("ColorSpaceDescription.DeltaEFormula", "CIELab");
    DeviceDriver::SpectrumDataFifo fifo;
    const Vector<SpectrumData> strip = DrawnStrip({0.2f, 0.6f}, 15);
    for (unsigned long index = 0; index < strip.Size(); ++index) {
        fifo.Push(strip[index]);
    }
    fifo.SetFinished(true);
    Vector<SpectrumData> fromFifo(0);
    EXPECT_TRUE(RecognitionMarvane().Recognize(fifo, fromFifo));
    EXPECT_EQ(fromFifo.Size(), 2u);

    const RecognitionElement& element = recognition.Elements()[0];
    EXPECT_NEAR(element.ForwardDifference(),
        CMetry::ColorDifference::GetDeltaE(CMetry::HvSpectrum(element.Load()),
            CMetry::HvSpectrum(recognition.Elements()[1].Load()), conditions, 0, 0, 0),
        1e-3);
}

// Drawn fast, a field of three measurements has blurred borders on both sides of its middle one;
// the bridge joins all three into one edge, which alone would drop the field without a trace.
TEST(RecognitionMarvaneTest, RefusesAFieldSwallowedByTheEdgesAroundIt)
{
    RecognitionMarvane recognition;
    Vector<SpectrumData> patches(0);
    EXPECT_FALSE(
        recognition.Recognize(DrawnFields({{0.85f, 15}, {0.2f, 15}, {0.6f, 3}, {0.05f, 15}, {0.85f, 15}}), patches));
    EXPECT_LT(recognition.Edges().size(), 4u);
    EXPECT_EQ(patches.Size(), 0u);
}

TEST(RecognitionMarvaneTest, AnswersFalseAndKeepsThePatchesWhenNoFieldIsFound)
{
    RecognitionMarvane recognition;
    Vector<SpectrumData> patches(1);
    patches[0] = Measurement(0.4f);

    EXPECT_FALSE(recognition.Recognize(DrawnStrip({}, 20), patches));
    EXPECT_FALSE(RecognitionMarvane().Recognize(Vector<SpectrumData>(0), patches));

    Vector<SpectrumData> shortSpectra = DrawnStrip({0.2f, 0.6f}, 15);
    shortSpectra[20] = Measurement(0.6f, 20);
    EXPECT_FALSE(RecognitionMarvane().Recognize(shortSpectra, patches));

    Vector<SpectrumData> oneEdge(20);
    for (unsigned long index = 0; index < oneEdge.Size(); ++index) {
        oneEdge[index] = Measurement(index < 10 ? 0.85f : 0.1f);
    }
    EXPECT_FALSE(RecognitionMarvane().Recognize(oneEdge, patches));

    DeviceDriver::SpectrumDataFifo unfinished;
    unfinished.Push(Measurement(0.2f));
    EXPECT_FALSE(RecognitionMarvane().Recognize(unfinished, patches));
    EXPECT_TRUE(unfinished.IsEmpty());

    ASSERT_EQ(patches.Size(), 1u);
    EXPECT_FLOAT_EQ(patches[0].Load()[0], 0.4f);
    EXPECT_EQ(recognition.GetDescription(), "Recognition by Ilse Marvane");
}

}
