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

TEST(LogItemTest, FunctionNamesJoinPackageClassAndFunction)
{
    EXPECT_STREQ("Utilities::List::Append", FunctionName("Utilities", "List", "Append").Name().CString());
    EXPECT_STREQ("CMetry::GetDensity", FunctionName("CMetry", "", "GetDensity").Name().CString());
    EXPECT_STREQ("CMetry::GetDensity", FunctionName("CMetry", nullptr, "GetDensity").Name().CString());
}

TEST(LogItemTest, CallsAndReturnsShowDepthAddressNameAndDetails)
{
    const FunctionName append("Utilities", "List", "Append");

    EXPECT_EQ("| CALL - 0x12ab40 - Utilities::List::Append - ( value:3 )",
              LineOf(CallLogItem(append, address, 2, "( value:3 )")));
    EXPECT_EQ("CALL - Utilities::List::Append - ()", LineOf(CallLogItem(append, nullptr, 1, "()")));
    EXPECT_EQ("CALL - Utilities::List::Append", LineOf(CallLogItem(append, nullptr, 1, "")));
    EXPECT_EQ("| | RETURN - 0x12ab40 - Utilities::List::Append - {true}",
              LineOf(ReturnLogItem(append, address, 3, "true")));
    EXPECT_EQ("RETURN - Utilities::List::Append", LineOf(ReturnLogItem(append, nullptr, 1, "")));
}

TEST(LogItemTest, DebugLinesAreTheIndentedTextAlone)
{
    const FunctionName find("Utilities", "Map", "Find");

    EXPECT_EQ("    bucket 7 is empty", LineOf(DebugBreakLogItem(find, address, 3, "bucket 7 is empty")));
    EXPECT_EQ("| | ( bucket:7 )", LineOf(UserDebugLogItem(find, address, 3, "( bucket:7 )")));
    EXPECT_EQ("", LineOf(DebugBreakLogItem(find, nullptr, 1, "")));
}

TEST(LogItemTest, TheTracersOwnFailures)
{
    EXPECT_STREQ("Assertion failed Tracer::Check: depth, below zero",
                 ExceptionDiagnostic("Assertion failed", "Tracer::Check", "depth", "below zero").Text().CString());

    Vector<String> names;
    for (long i = 0; i < 45; ++i) {
        names.Append(String(i));
    }
    EXPECT_EQ(45UL, names.Size());
    EXPECT_STREQ("44", names[44].CString());
    try {
        names[45];
        ADD_FAILURE() << "an index beyond the end was taken";
    } catch (const ExceptionDiagnostic& failure) {
        EXPECT_STREQ("vector index >= vector size", failure.Text().CString());
    }
}
