#include "cmetry/CieTables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using CMetry::CieTables;

namespace {

double ValueAt(const CieTables::Table& table, int wavelength)
{
    if (wavelength < table.minimum || wavelength > table.maximum) {
        return 0.0;
    }
    return table.values[static_cast<std::size_t>((wavelength - table.minimum) / table.step)];
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
