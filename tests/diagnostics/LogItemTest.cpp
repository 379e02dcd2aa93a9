#include <gtest/gtest.h>

#include <string>

#include "diagnostics/CallLogItem.h"
#include "diagnostics/DebugBreakLogItem.h"
#include "diagnostics/ExceptionDiagnostic.h"
#include "diagnostics/FunctionName.h"
#include "diagnostics/ReturnLogItem.h"
#include "diagnostics/UserDebugLogItem.h"
#include "diagnostics/Vector.h"

using namespace Diagnostics;

namespace {

const void* const address = reinterpret_cast<const void*>(0x12ab40);

std::string LineOf(const LogItem& item)
{
    return item.ToString().CString();
}

}

// What the tracer's own tests never show: a deeper level, a missing class, empty details.
TEST(LogItemTest, LinesShowDepthAddressNameAndWhateverDetailsThereAre)
{
    const FunctionName append("Utilities", "List", "Append");
    const FunctionName density("CMetry", nullptr, "GetDensity");

    EXPECT_EQ(
        "| | RETURN - 0x12ab40 - Utilities::List::Append - {true}", LineOf(ReturnLogItem(append, address, 3, "true")));
    EXPECT_EQ("CALL - CMetry::GetDensity", LineOf(CallLogItem(density, nullptr, 1, "")));
    EXPECT_EQ("    bucket 7 is empty", LineOf(DebugBreakLogItem(density, address, 3, "bucket 7 is empty")));
    EXPECT_EQ("| | ( bucket:7 )", LineOf(UserDebugLogItem(density, address, 3, "( bucket:7 )")));
    EXPECT_EQ("", LineOf(DebugBreakLogItem(density, nullptr, 1, "")));
}

TEST(LogItemTest, TheTracersOwnFailures)
{
    EXPECT_STREQ("Assertion failed Tracer::Check: depth, below zero",
        ExceptionDiagnostic("Assertion failed", "Tracer::Check", "depth", "below zero").Text().CString());

    Vector<String> names;
    for (long i = 0; i < 45; ++i) {
        names.Append(String(i));
    }
    EXPECT_STREQ("44", names[44].CString());
    try {
        names[45];
        ADD_FAILURE() << "an index beyond the end was taken";
    } catch (const ExceptionDiagnostic& failure) {
        EXPECT_STREQ("vector index >= vector size", failure.Text().CString());
    }
}
