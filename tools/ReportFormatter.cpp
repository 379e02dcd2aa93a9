#include "tools/ReportFormatter.h"

#include "tools/CgatsFormatter.h"
#include "tools/CsvFormatter.h"
#include "tools/JsonFormatter.h"
#include "tools/TableFormatter.h"
#include "tools/platform/UtcClock.h"

namespace OrbelCli {

std::unique_ptr<ReportFormatter> ReportFormatter::Create(const std::string& format)
{
    if (format == "table") {
        return std::make_unique<TableFormatter>();
    }
    if (format == "csv") {
        return std::make_unique<CsvFormatter>();
    }
    if (format == "json") {
        return std::make_unique<JsonFormatter>();
    }
    if (format == "cgats") {
        return std::make_unique<CgatsFormatter>(UtcClock::Now());
    }
    return nullptr;
}

}
