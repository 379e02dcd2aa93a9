#pragma once
// One JSON object per measurement. Numbers are written so that they read back as the very floats
// that the module gave.

#include "tools/ReportFormatter.h"

namespace OrbelCli {

class JsonFormatter : public ReportFormatter {
public:
    void Write(std::ostream& out, const MeasurementReport& report) const override;

    static std::string Quoted(const std::string& text);

private:
    static std::string Number(float value);
    template<typename Values>
    static std::string Array(const Values& values);
    static std::string SampleObject(const Sample& sample);
};

}
