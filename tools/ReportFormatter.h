#pragma once
// Writes a measurement in one of the output formats of the program.

#include <memory>
#include <ostream>
#include <string>

#include "tools/MeasurementReport.h"

namespace OrbelCli {

class ReportFormatter {
public:
    virtual ~ReportFormatter() = default;
    virtual void Write(std::ostream& out, const MeasurementReport& report) const = 0;

    // "table", "csv", "json" or "cgats"; null for any other name.
    static std::unique_ptr<ReportFormatter> Create(const std::string& format);
};

}
