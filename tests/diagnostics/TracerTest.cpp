#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "diagnostics/DebugTraceItem.h"
#include "diagnostics/DiagnosticsManager.h"
#include "diagnostics/ExceptionDiagnostic.h"
#include "diagnostics/StringPublisher.h"
#include "diagnostics/TraceItem.h"
#include "diagnostics/UserDebugTraceItem.h"
#include "tests/TemporaryDirectory.h"
#include "tests/WorkingDirectoryChange.h"

using namespace Diagnostics;

namespace {

// The tracer reads its filter and opens its output in the working directory at its first use,
// once per process. Every test of this program runs in one prepared directory, whose filter
// shows the package Utilities alone.
class TracerWorkingDirectory : public testing::Environment {
public:
    void SetUp() override
    {
        directory = std::make_unique<TemporaryDirectory>();
        directory->Write("PackageDiagnosticsFilter.txt", "{ShowOnly}\nUtilities\n");
        inside = std::make_unique<WorkingDirectoryChange>(directory->Path());
    }

    void TearDown() override
    {
        inside.reset();
        directory.reset();
    }

    static std::unique_ptr<TemporaryDirectory> directory;

private:
    std::unique_ptr<WorkingDirectoryChange> inside;
};

std::unique_ptr<TemporaryDirectory> TracerWorkingDirectory::directory;

testing::Environment* const environment = testing::AddGlobalTestEnvironment(new TracerWorkingDirectory);

class LinePublisher : public StringPublisher {
public:
    void Publish(const String& line) override { lines.emplace_back(line.CString()); }

    std::vector<std::string> lines;
};

using Lines = std::vector<std::string>;

const void* const listAddress = reinterpret_cast<const void*>(0x12ab40);

int FindInMap(int key)
{
    TraceItem trace("Utilities", "Map", "Find");
    trace.ExpectReturnValue();
    trace.AddParameter("key");
    trace.GetText() += static_cast<long>(key);
    trace.LogCall();
    trace.GetText() += static_cast<long>(key * 2);
    trace.ReportReturnValue();
    return key * 2;
}

void AppendToList(int value)
{
    TraceItem trace("Utilities", "List", "Append", listAddress);
    trace.AddParameter("value");
    trace.GetText() += static_cast<long>(value);
    trace.AddParameter("where");
    trace.GetText() += "end";
    trace.LogCall();
    FindInMap(value);
}

void CalculateDensity()
{
    TraceItem trace("CMetry", "", "GetDensity");
    trace.LogCall();
    FindInMap(1);
}

Lines DebugOutputLines()
{
    std::istringstream output(TracerWorkingDirectory::directory->Read("DebugOutput.txt"));
    Lines lines;
    for (std::string line; std::getline(output, line);) {
        lines.push_back(line);
    }
    return lines;
}

}

TEST(TracerTest, CallsAndReturnsAreIndentedByDepthInThePublishersAndTheDebugOutputFile)
{
    LinePublisher publisher;
    AppendToList(3);

    const Lines expected{"CALL - 0x12ab40 - Utilities::List::Append - ( value:3, where:end )",
        "| CALL - Utilities::Map::Find - ( key:3 )", "| RETURN - Utilities::Map::Find - {6}",
        "RETURN - 0x12ab40 - Utilities::List::Append"};
    EXPECT_EQ(expected, publisher.lines);
    const Lines lines = DebugOutputLines();
    ASSERT_GE(lines.size(), 4U);
    EXPECT_EQ(expected, Lines(lines.end() - 4, lines.end()));
}

TEST(TracerTest, AShowOnlyFilterTracesOnlyItsPackage)
{
    LinePublisher publisher;
    CalculateDensity();
    {
        TraceItem freeFunction("Utilities", "", "Trim");
        freeFunction.LogCall();
    }

    // The hidden function still counts as a level.
    EXPECT_EQ((Lines{"| CALL - Utilities::Map::Find - ( key:1 )", "| RETURN - Utilities::Map::Find - {2}",
                  "CALL - Utilities::Trim - ()", "RETURN - Utilities::Trim"}),
        publisher.lines);
}

TEST(TracerTest, DebugTextsStandBelowTheirFunction)
{
    LinePublisher publisher;
    {
        TraceItem trace("Utilities", "Map", "Rehash");
        trace.LogCall();
        {
            DebugTraceItem debug("Utilities", "Map", "Rehash");
            debug.AddParameter("first text");
            debug.AddParameter("bucket 7 is empty");
            debug.LogCall();
        }
        {
            UserDebugTraceItem values("Utilities", "Map", "Rehash");
            values.AddParameter("bucket");
            values.GetText() += 7L;
            values.AddParameter("size");
            values.GetText() += 53L;
            values.LogCall();
        }
        FindInMap(2);
    }

    EXPECT_EQ((Lines{"CALL - Utilities::Map::Rehash - ()", "  bucket 7 is empty", "| ( bucket:7, size:53 )",
                  "| CALL - Utilities::Map::Find - ( key:2 )", "| RETURN - Utilities::Map::Find - {4}",
                  "RETURN - Utilities::Map::Rehash"}),
        publisher.lines);
}

TEST(TracerTest, AResultThatIsNeverReportedIsAMissingReturn)
{
    LinePublisher publisher;
    {
        TraceItem outer("Utilities", "List", "Size");
        outer.LogCall();
        TraceItem forgetful("Utilities", "List", "Count");
        forgetful.ExpectReturnValue();
        forgetful.LogCall();
    }

    EXPECT_EQ((Lines{"CALL - Utilities::List::Size - ()", "| CALL - Utilities::List::Count - ()",
                  "| RETURN - Utilities::List::Count",
                  "| CALL - Utilities::List::Count - ( \n| ********** Developer Exception : Missing return "
                  "statement! **********: )",
                  "RETURN - Utilities::List::Size"}),
        publisher.lines);
}

TEST(TracerTest, AFunctionLeftByAnExceptionMissesNoReturn)
{
    LinePublisher publisher;
    try {
        TraceItem trace("Utilities", "String", "ToLong");
        trace.ExpectReturnValue();
        trace.LogCall();
        throw std::runtime_error("not a number");
    } catch (const std::runtime_error&) {
    }
    {
        TraceItem after("Utilities", "String", "Length");
    }

    EXPECT_EQ((Lines{"CALL - Utilities::String::ToLong - ()", "RETURN - Utilities::String::ToLong",
                  "RETURN - Utilities::String::Length"}),
        publisher.lines);
}

TEST(TracerTest, PublishersTakeTheFreeSlotsAndLeaveThem)
{
    // The manager's own publisher of DebugOutput.txt holds one of the five slots.
    {
        TraceItem first("Utilities", "List", "Clear");
    }

    std::vector<std::unique_ptr<LinePublisher>> publishers;
    for (int i = 0; i < 4; ++i) {
        publishers.push_back(std::make_unique<LinePublisher>());
    }
    try {
        LinePublisher sixth;
        ADD_FAILURE() << "a sixth publisher was registered";
    } catch (const ExceptionDiagnostic& failure) {
        EXPECT_STREQ("Assertion failed DiagnosticsManager::Register: free publisher slot, no more than 5 "
                     "publishers can be registered",
            failure.Text().CString());
    }

    publishers.erase(publishers.begin());
    LinePublisher replacement;
    FindInMap(4);
    EXPECT_EQ(2U, replacement.lines.size());
    EXPECT_EQ(replacement.lines, publishers.front()->lines);
}
