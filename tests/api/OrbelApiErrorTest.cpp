#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "api/OrbelApiError.h"
#include "diagnostics/String.h"
#include "include/orbel.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionOutOfBound.h"

using Utilities::String;

namespace {

std::string Text(const Utilities::Exception& failure)
{
    return failure.Text()->CString();
}

}

TEST(OrbelApiErrorTest, EveryCodeHasItsTextAndTheOthersReadAsUnkownCode)
{
    const char* const expected[] = {
        "no error",
        "device not ready",
        "device not connected",
        "device not calibrated",
        "unkown code \"4\"",
        "no substrate white reference set",
        "wrong measurement mode",
        "strip recognition failed",
        "no data available",
        "exception occured",
        "invalid argument",
        "unkown error",
    };
    for (int32_t code = 0; code <= OB_UnknownError; ++code) {
        EXPECT_EQ(OrbelApiError::TextOf(code).ToStdString(), expected[code]) << "code " << code;
    }
    EXPECT_EQ(OrbelApiError::TextOf(12).ToStdString(), "unkown code \"12\"");
    EXPECT_EQ(OrbelApiError::TextOf(-1).ToStdString(), "unkown code \"-1\"");
    EXPECT_EQ(OrbelApiError::TextOf(INT32_MIN).ToStdString(), "unkown code \"-2147483648\"");
}

TEST(OrbelApiErrorTest, ConstructorsKeepCodeAndMessage)
{
    const OrbelApiError fromCode(OB_InvalidArgument);
    EXPECT_EQ(fromCode.Code(), OB_InvalidArgument);
    EXPECT_EQ(Text(fromCode), "invalid argument");
    EXPECT_EQ(Text(OrbelApiError(OB_KeyNotPressed)), "unkown code \"4\"");

    const OrbelApiError withMessage(OB_NoDataAvailable, String("measurement not triggered !!"));
    EXPECT_EQ(withMessage.Code(), OB_NoDataAvailable);
    EXPECT_EQ(Text(withMessage), "measurement not triggered !!");

    OrbelApiError copy(withMessage);
    EXPECT_EQ(copy.Code(), OB_NoDataAvailable);
    EXPECT_EQ(Text(copy), "measurement not triggered !!");
    copy = fromCode;
    EXPECT_EQ(copy.Code(), OB_InvalidArgument);
    EXPECT_EQ(Text(copy), "invalid argument");
    EXPECT_EQ(Text(withMessage), "measurement not triggered !!");

    const std::string valueString = fromCode.GetValueString().CString();
    EXPECT_NE(valueString.find("OrbelApiError: invalid argument"), std::string::npos) << valueString;
}

TEST(OrbelApiErrorTest, ConversionKeepsTheMessageAndFindsTheCodeByLiteral)
{
    struct Case {
        const char* message;
        int32_t code;
    };
    const Case cases[] = {
        {"Measurement Error: White data not valid", OB_DeviceNotCalibrated},
        // The literals are compared in their order and with their case.
        {"Recognition lost: Device IO control impossible", OB_StripRecognitionFailed},
        {"Device IO control impossible: White data not valid", OB_DeviceNotCalibrated},
        {"dark data not valid", OB_ExceptionOccured},
        {"recognition", OB_ExceptionOccured},
        // Only the dark and the white calculation mean that calibrating failed.
        {"Sample calculation: Data is not valid", OB_ExceptionOccured},
        {"Dark calculation:no blank", OB_ExceptionOccured},
        {"Log Error (ID 10003)", OB_ExceptionOccured},
        {"", OB_ExceptionOccured},
    };
    for (const Case& testCase : cases) {
        const OrbelApiError converted{Utilities::ExceptionOutOfBound(testCase.message)};
        EXPECT_EQ(converted.Code(), testCase.code) << testCase.message;
        EXPECT_EQ(Text(converted), testCase.message);
    }
}

TEST(OrbelApiErrorTest, ConversionOfAnOrbelApiErrorKeepsItsCode)
{
    const OrbelApiError original(OB_ExceptionOccured, String("Recognition"));
    const Utilities::Exception& seenAsFoundation = original;
    const OrbelApiError converted(seenAsFoundation);
    EXPECT_EQ(converted.Code(), OB_ExceptionOccured);
    EXPECT_EQ(Text(converted), "Recognition");

    const OrbelApiError unknownCode{static_cast<const Utilities::Exception&>(OrbelApiError(42))};
    EXPECT_EQ(unknownCode.Code(), 42);
    EXPECT_EQ(Text(unknownCode), "unkown code \"42\"");

    const OrbelApiError fromNullpointer{Utilities::ExceptionNullpointer("Failed to access to nullpointer.")};
    EXPECT_EQ(fromNullpointer.Code(), OB_ExceptionOccured);
}
