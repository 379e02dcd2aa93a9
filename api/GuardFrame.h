#pragma once

#include <cstdint>

#include "api/CallGate.h"
#include "include/orbel.h"
#include "utilities/Exception.h"

// The frames around the bodies of the exported functions. No exception leaves them: a failure
// of the system becomes a result code, and the last-error store of Orbel keeps its text for
// "LastError". Anything else that escapes a body ends in a fixed answer that stores nothing. Each
// frame passes the call gate first, so that the body and the store of its outcome are one call.
class GuardFrame {
public:
    // A null pointer of the host is the first thing every body tests.
    static void RequireArgument(const void* argument);

    // The frame of the status functions: the code of the store after the body ran, 0 and
    // "no error" on success.
    template<class Body>
    static int32_t RunStatus(Body&& body) noexcept;

    // The frame of OB_GetDeviceInfo. The body answers with the characters of the result
    // buffer. A failure answers the full error text; success leaves the store alone, so that
    // "LastError" can be read without clearing it.
    template<class Body>
    static const char* RunDeviceInfo(Body&& body) noexcept;

    // The frame of OB_GetOption. Success stores 0; a failure leaves the result buffer as it
    // stands and answers it, and the caller asks "LastError" for the reason.
    template<class Body>
    static const char* RunOption(Body&& body) noexcept;

private:
    // Passes the call gate and begins the call in Orbel.
    static CallGate::Entry EnterCall();
    static void StoreSuccess();
    // Converts the failure, resets the connection if it was lost, and stores code and text.
    static void StoreFailure(const Utilities::Exception& failure);
    static int32_t ReadStoredCode();
    static const char* AnswerFullErrorText();
    static const char* AnswerResultBuffer();
    // For a failure of the handler itself, when the store can't be reached.
    static const char* HoldEscapedMessage(const Utilities::Exception& failure) noexcept;

    static constexpr const char* unknownException = "Unknown Exception";
    static constexpr const char* unknownError = "Unknown Error";
};

// Each frame ends in catch (...): a failure outside the module's family, or one raised while a
// failure is stored, must not cross the C boundary; the host gets the frame's fixed answer.
template<class Body>
int32_t GuardFrame::RunStatus(Body&& body) noexcept
{
    try {
        const CallGate::Entry entry = EnterCall();
        try {
            body();
            StoreSuccess();
        } catch (const Utilities::Exception& failure) {
            StoreFailure(failure);
        }
        return ReadStoredCode();
    } catch (...) {
        return OB_UnknownError;
    }
}

template<class Body>
const char* GuardFrame::RunDeviceInfo(Body&& body) noexcept
{
    try {
        const CallGate::Entry entry = EnterCall();
        try {
            return body();
        } catch (const Utilities::Exception& failure) {
            StoreFailure(failure);
            return AnswerFullErrorText();
        }
    } catch (const Utilities::Exception& failure) {
        return HoldEscapedMessage(failure);
    } catch (...) {
        return unknownException;
    }
}

template<class Body>
const char* GuardFrame::RunOption(Body&& body) noexcept
{
    try {
        const CallGate::Entry entry = EnterCall();
        try {
            const char* answer = body();
            StoreSuccess();
            return answer;
        } catch (const Utilities::Exception& failure) {
            StoreFailure(failure);
            return AnswerResultBuffer();
        }
    } catch (...) {
        return unknownError;
    }
}
