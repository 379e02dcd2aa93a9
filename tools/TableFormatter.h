#pragma once
// The report for people: a table of colour values, the spectra side by side when they fit the
// width of a terminal, and the further values.

#include "tools/ReportFormatter.h"

namespace OrbelCli {

class TableFormatter : public ReportFormatter {
public:
    // Up to this many spectra are printed as columns; more would not fit a terminal.
    static constexpr std::size_t MaxSpectrumColumns = 8;

    // spectrumStep: the spacing in nm of the rows of the spectrum table; 0 leaves the table out.
    explicit TableFormatter(int spectrumStep = WavelengthStep);
    void Write(std::ostream& out, const MeasurementReport& report) const override;

private:
    static void WriteColourTable(std::ostream& out, const MeasurementReport& report);
    void WriteSpectrumTable(std::ostream& out, const MeasurementReport& report) const;
    static void WriteNotes(std::ostream& out, const MeasurementReport& report);

    int spectrumStep;
};

}
