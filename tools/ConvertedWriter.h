#pragma once
// The colour values of converted spectra written as they come, block by block, as CSV, CGATS or
// JSON; the density and ΔE columns only when they were computed.

#include <ostream>
#include <string>
#include <vector>

#include "cmetry/HvMeasureConditions.h"

namespace OrbelCli {

// Spectra one after another, 36 values each, and their results in the same order.
struct Block {
    std::vector<std::string> names;
    std::vector<float> spectra;
    std::vector<float> xyz;
    std::vector<float> lab;
    std::vector<float> density;
    std::vector<float> deltaE;
};

class ConvertedWriter {
public:
    ConvertedWriter(std::ostream& out, std::string format, bool withDensity, bool withDeltaE);
    void Begin(const CMetry::HvMeasureConditions& conditions);
    void Write(const Block& block);
    void End();

private:
    std::vector<std::string> Fields() const;
    void Line(const std::vector<std::string>& cells, char separator);
    static std::string Numbers(const float* values, std::size_t count, const std::string& separator);

    std::ostream& out;
    std::string format;
    bool withDensity;
    bool withDeltaE;
    std::size_t written = 0;
};

}
