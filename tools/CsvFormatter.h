#pragma once
// Comma-separated values: one header line, one line per sample.

#include "tools/ReportFormatter.h"

namespace OrbelCli {

class CsvFormatter : public ReportFormatter {
public:
    void Write(std::ostream& out, const MeasurementReport& report) const override;
    static std::string Quoted(const std::string& cell);
};

}
