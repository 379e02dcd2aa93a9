#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "api/GuardFrame.h"
#include "api/OrbelApiError.h"
#include "include/orbel.h"
#include "utilities/ExceptionCalculationProblem.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"

using Utilities::String;

namespace {

std::string LastError()
{
    return OB_GetDeviceInfo("LastError");
}

template<class Failure>
int32_t StatusAfter(const Failure& failure)
{
    return GuardFrame::RunStatus([&] { throw failure; });
}

int32_t StatusOfSuccess()
{
    return GuardFrame::RunStatus([] {});
}

}

TEST(GuardFrameTest, AFoundationFailureIsStoredAndItsCodeReturned)
{
    EXPECT_EQ(
        StatusAfter(Utilities::ExceptionOutOfBound("Measurement Error: Dark data not valid")), OB_DeviceNotCalibrated);
    EXPECT_EQ(LastError(), "device not calibrated Measurement Error: Dark data not valid");

    EXPECT_EQ(StatusAfter(Utilities::ExceptionCalculationProblem("Dark calculation: Data is not valid")),
        OB_DeviceNotCalibrated);
    EXPECT_EQ(LastError(), "device not calibrated Dark calculation: Data is not valid");

    EXPECT_EQ(
        StatusAfter(Utilities::ExceptionOutOfBound("White calculation: White check failed")), OB_DeviceNotCalibrated);
    EXPECT_EQ(LastError(), "device not calibrated White calculation: White check failed");

    EXPECT_EQ(StatusAfter(Utilities::ExceptionOutOfBound("Recognition failed")), OB_StripRecognitionFailed);
    EXPECT_EQ(LastError(), "strip recognition failed Recognition failed");

    EXPECT_EQ(
        StatusAfter(Utilities::ExceptionResourceNotAvailable("Device IO control impossible")), OB_DeviceNotConnected);
    EXPECT_EQ(LastError(), "device not connected Device IO control impossible");

    EXPECT_EQ(StatusAfter(Utilities::ExceptionNullpointer("Failed to access to nullpointer.")), OB_ExceptionOccured);
    EXPECT_EQ(LastError(), "exception occured Failed to access to nullpointer.");

    EXPECT_EQ(StatusAfter(Utilities::ExceptionOutOfBound("")), OB_ExceptionOccured);
    EXPECT_EQ(LastError(), "exception occured ");
}

TEST(GuardFrameTest, AnOrbelApiErrorKeepsItsCodeAndTheTextIsNotRepeated)
{
    EXPECT_EQ(StatusAfter(OrbelApiError(OB_NoSubstrateWhiteReference)), OB_NoSubstrateWhiteReference);
    EXPECT_EQ(LastError(), "no substrate white reference set");

    EXPECT_EQ(StatusAfter(OrbelApiError(OB_NoDataAvailable, String("index7 is out of range"))), OB_NoDataAvailable);
    EXPECT_EQ(LastError(), "no data available index7 is out of range");

    EXPECT_EQ(StatusAfter(OrbelApiError(OB_ExceptionOccured, String("Recognition"))), OB_ExceptionOccured);
    EXPECT_EQ(LastError(), "exception occured Recognition");

    EXPECT_EQ(StatusAfter(OrbelApiError(77)), 77);
    EXPECT_EQ(LastError(), "unkown code \"77\"");
}

TEST(GuardFrameTest, SuccessAfterAFailureReadsNoErrorWithNothingBehind)
{
    ASSERT_EQ(StatusAfter(Utilities::ExceptionOutOfBound("vector index >= vector size")), OB_ExceptionOccured);
    EXPECT_EQ(StatusOfSuccess(), OB_NoError);
    EXPECT_EQ(LastError(), "no error");
}

TEST(GuardFrameTest, WhatIsNoFoundationFailureAnswersUnknownErrorAndStoresNothing)
{
    ASSERT_EQ(StatusAfter(OrbelApiError(OB_InvalidArgument)), OB_InvalidArgument);

    EXPECT_EQ(GuardFrame::RunStatus([] { throw std::runtime_error("standard library"); }), OB_UnknownError);
    EXPECT_EQ(GuardFrame::RunStatus([] { throw 7; }), OB_UnknownError);
    EXPECT_EQ(LastError(), "invalid argument");

    EXPECT_STREQ(GuardFrame::RunDeviceInfo([]() -> const char* { throw std::bad_alloc(); }), "Unknown Exception");
    EXPECT_STREQ(GuardFrame::RunOption([]() -> const char* { throw std::out_of_range("x"); }), "Unknown Error");
    EXPECT_EQ(LastError(), "invalid argument");
}

TEST(GuardFrameTest, DeviceInfoAnswersTheFullErrorTextAndLeavesTheStoreOnSuccess)
{
    const std::string answer = GuardFrame::RunDeviceInfo(
        []() -> const char* { throw Utilities::ExceptionOutOfBound("EEPROM Error (ID 1100)"); });
    EXPECT_EQ(answer, "exception occured EEPROM Error (ID 1100)");

    EXPECT_STREQ(GuardFrame::RunDeviceInfo([] { return "answer"; }), "answer");
    EXPECT_EQ(LastError(), "exception occured EEPROM Error (ID 1100)");
}

TEST(GuardFrameTest, OptionLeavesTheResultBufferOnFailureAndStoresSuccess)
{
    ASSERT_STREQ(OB_GetDeviceInfo("Version"), "1.0.5");
    const std::string kept = GuardFrame::RunOption(
        []() -> const char* { throw Utilities::ExceptionOutOfBound("Modification not supported for key: Gloss"); });
    EXPECT_EQ(kept, "1.0.5");
    EXPECT_EQ(LastError(), "exception occured Modification not supported for key: Gloss");

    EXPECT_STREQ(GuardFrame::RunOption([] { return "D65"; }), "D65");
    EXPECT_EQ(LastError(), "no error");
}

TEST(GuardFrameTest, ANullArgumentIsAnInvalidArgument)
{
    int value = 0;
    EXPECT_NO_THROW(GuardFrame::RequireArgument(&value));
    try {
        GuardFrame::RequireArgument(nullptr);
        FAIL() << "a null argument passed";
    } catch (const OrbelApiError& error) {
        EXPECT_EQ(error.Code(), OB_InvalidArgument);
        EXPECT_STREQ(error.Text()->CString(), "invalid argument");
    }
}
