#include "cmetry/CieTables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

using CMetry::CieTables;

namespace {

constexpr int kIlluminantA = 0;
constexpr int kIlluminantD65 = 4;

double ValueAt(const CieTables::Table& table, int wavelength)
{
    if (wavelength < table.minimum || wavelength > table.maximum) {
        return 0.0;
    }
    return table.values[static_cast<std::size_t>((wavelength - table.minimum) / table.step)];
}

// X, Y, Z of the perfect diffuser, summed at 1 nm over 360 to 780 nm; for the 1 nm tables only.
std::array<double, 3> WhitePoint(const CieTables::Table& illuminant, int observer)
{
    std::array<double, 3> sums{};
    for (int wavelength = 360; wavelength <= 780; ++wavelength) {
        for (int axis = 0; axis < 3; ++axis) {
            sums[axis] += ValueAt(illuminant, wavelength) * ValueAt(CieTables::Observer[observer][axis], wavelength);
        }
    }
    const double k = 100.0 / sums[1];
    return {k * sums[0], k * sums[1], k * sums[2]};
}

std::vector<const CieTables::Table*> AllTables()
{
    std::vector<const CieTables::Table*> tables;
    for (const auto& table : CieTables::Illuminant) {
        tables.push_back(&table);
    }
    for (const auto& table : CieTables::Fluorescent) {
        tables.push_back(&table);
    }
    for (const auto& table : CieTables::Daylight) {
        tables.push_back(&table);
    }
    for (const auto& observer : CieTables::Observer) {
        for (const auto& table : observer) {
            tables.push_back(&table);
        }
    }
    return tables;
}

}

TEST(CieTables, EveryTableFillsItsRangeAndKeepsTheCieScale)
{
    for (const CieTables::Table* table : AllTables()) {
        ASSERT_GT(table->step, 0);
        EXPECT_EQ((table->maximum - table->minimum) % table->step, 0) << table->minimum;
        EXPECT_EQ(table->values.size(), static_cast<std::size_t>((table->maximum - table->minimum) / table->step + 1))
            << table->minimum << " to " << table->maximum;
    }
    // A and the D series are normalised to 100 at 560 nm; B and C are not.
    for (int illumination : {0, 3, 4, 5, 6}) {
        EXPECT_FLOAT_EQ(ValueAt(CieTables::Illuminant[illumination], 560), 100.0f) << illumination;
    }
    EXPECT_FLOAT_EQ(ValueAt(CieTables::Daylight[0], 560), 100.0f);
    for (const auto& observer : CieTables::Observer) {
        EXPECT_FLOAT_EQ(*std::max_element(observer[1].values.begin(), observer[1].values.end()), 1.0f);
        EXPECT_EQ(ValueAt(observer[2], observer[2].maximum), 0.0);
    }
}

TEST(CieTables, OneNanometreTablesGiveTheStandardWhitePoints)
{
    struct Case {
        int illuminant;
        int observer;
        double x;
        double z;
    };
    for (const Case& c : {Case{kIlluminantD65, 0, 95.05, 108.88}, Case{kIlluminantA, 0, 109.85, 35.59},
                          Case{kIlluminantD65, 1, 94.81, 107.30}}) {
        const auto white = WhitePoint(CieTables::Illuminant[c.illuminant], c.observer);
        EXPECT_NEAR(white[0], c.x, 0.005) << "illuminant " << c.illuminant << " observer " << c.observer;
        EXPECT_NEAR(white[2], c.z, 0.005) << "illuminant " << c.illuminant << " observer " << c.observer;
    }
}
