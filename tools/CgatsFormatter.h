#pragma once
// The colour industry's exchange format (CGATS.17): a keyword header, the field names between
// BEGIN_DATA_FORMAT and END_DATA_FORMAT, the sets between BEGIN_DATA and END_DATA.

#include "tools/ReportFormatter.h"

namespace OrbelCli {

class CgatsFormatter : public ReportFormatter {
public:
    // created: the time stamp of the CREATED keyword.
    explicit CgatsFormatter(std::string created);
    void Write(std::ostream& out, const MeasurementReport& report) const override;

private:
    static std::string Field(const std::string& value);

    std::string created;
};

}
