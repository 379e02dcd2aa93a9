#include "api/OrbelApiError.h"

#include <iterator>

#include "include/orbel.h"

using Utilities::String;

namespace {

// Indexed by code. The key that wasn't pressed is no failure, so code 4 has no text.
constexpr const char* codeTexts[] = {
    "no error",
    "device not ready",
    "device not connected",
    "device not calibrated",
    nullptr,
    "no substrate white reference set",
    "wrong measurement mode",
    "strip recognition failed",
    "no data available",
    "exception occured",
    "invalid argument",
    "unkown error",
};

// The lower layers select a code by putting one of these into the text of their failure, so
// their wording is a contract and they are matched exactly, case included. The first match
// in this order wins.
struct CodeSelector {
    const char* fragment;
    int32_t code;
};

constexpr CodeSelector codeSelectors[] = {
    {"Dark data not valid", OB_DeviceNotCalibrated},
    {"White data not valid", OB_DeviceNotCalibrated},
    // A calibration that fails in the calculation says so by its prefix rather than by the
    // two literals above; it leaves the instrument uncalibrated all the same.
    {"Dark calculation: ", OB_DeviceNotCalibrated},
    {"White calculation: ", OB_DeviceNotCalibrated},
    {"Recognition", OB_StripRecognitionFailed},
    {"Device IO control impossible", OB_DeviceNotConnected},
};

}

OrbelApiError::OrbelApiError(int32_t code) : Exception(TextOf(code)), code(code) { }

OrbelApiError::OrbelApiError(int32_t code, const String& message) : Exception(message), code(code) { }

OrbelApiError::OrbelApiError(const Utilities::Exception& failure)
    : Exception(*failure.Text()), code(CodeOf(failure)) { }

OrbelApiError::OrbelApiError(const OrbelApiError& other) = default;

OrbelApiError& OrbelApiError::operator=(const OrbelApiError& other) = default;

OrbelApiError::~OrbelApiError() = default;

String OrbelApiError::TextOf(int32_t code)
{
    if (code >= 0 && code < static_cast<int32_t>(std::size(codeTexts)) && codeTexts[code] != nullptr) {
        return String(codeTexts[code]);
    }
    return String("unkown code \"") + String(static_cast<long>(code)) + String("\"");
}

int32_t OrbelApiError::CodeOf(const Utilities::Exception& failure)
{
    if (const auto* apiError = dynamic_cast<const OrbelApiError*>(&failure)) {
        return apiError->code;
    }
    const String& message = *failure.Text();
    for (const CodeSelector& selector : codeSelectors) {
        if (message.Find(String(selector.fragment)) >= 0) {
            return selector.code;
        }
    }
    return OB_ExceptionOccured;
}
