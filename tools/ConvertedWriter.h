#pragma once
// The colour values of converted spectra written as they come, block by block, as CSV, CGATS or
// JSON; the columns beyond XYZ and Lab only when they were computed.

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cmetry/ColorRendering.h"
#include "cmetry/HvMeasureConditions.h"

namespace OrbelCli {

// Spectra one after another, 36 values each, and their results in the same order.
struct Block {
    std::vector<std::string> names;
    std::vector<float> spectra;
    std::vector<float> xyz;
    std::vector<float> lab;
    std::vector<float> chosen;
    std::vector<float> density;
    std::vector<float> deltaE;
    // Empty for a light without a correlated colour temperature.
    std::vector<std::optional<CMetry::ColorRendering::Result>> light;
};

class ConvertedWriter {
public:
    struct Columns {
        bool density;
        bool deltaE;
        // The values in this colour space as well.
        std::optional<std::string> colourSpace;
        bool light;
    };

    ConvertedWriter(std::ostream& out, std::string format, Columns columns);
    void Begin(const CMetry::HvMeasureConditions& conditions);
    void Write(const Block& block);
    void End();

private:
    std::vector<std::string> Fields() const;
    void WriteJson(const Block& block, std::size_t i);
    void WriteRow(const Block& block, std::size_t i);
    std::vector<std::string> LightCells(const std::optional<CMetry::ColorRendering::Result>& light) const;
    std::string JsonLight(const std::optional<CMetry::ColorRendering::Result>& light) const;
    void Line(const std::vector<std::string>& cells, char separator);
    static std::string Numbers(const float* values, std::size_t count, const std::string& separator);

    std::ostream& out;
    std::string format;
    Columns columns;
    std::size_t written = 0;
};

}
