#include "api/GuardFrame.h"

#include "api/Orbel.h"
#include "api/OrbelApiError.h"

void GuardFrame::RequireArgument(const void* argument)
{
    if (argument == nullptr) {
        throw OrbelApiError(OB_InvalidArgument);
    }
}

CallGate::Entry GuardFrame::EnterCall()
{
    CallGate::Entry entry = CallGate::Enter();
    Orbel::BeginCall();
    return entry;
}

void GuardFrame::StoreSuccess()
{
    Orbel::Instance().SetLastError(OB_NoError, OrbelApiError::TextOf(OB_NoError));
}

// A pulled cable shows below in many texts, of which few say so; an instrument that is gone
// after a failure is taken as the reason of it.
void GuardFrame::StoreFailure(const Utilities::Exception& failure)
{
    OrbelApiError error(failure);
    Orbel& orbel = Orbel::Instance();
    if (error.Code() == OB_ExceptionOccured && !orbel.IsConnected()) {
        error = OrbelApiError(OB_DeviceNotConnected, *error.Text());
    }
    if (error.Code() == OB_DeviceNotConnected) {
        orbel.ResetConnection();
    }
    orbel.SetLastError(error);
}

int32_t GuardFrame::ReadStoredCode()
{
    try {
        return Orbel::Instance().GetLastErrorCode();
    } catch (const Utilities::Exception& failure) {
        return OrbelApiError(failure).Code();
    } catch (...) {
        // Not even the stored code can be read; no exception may cross the C boundary.
        return OB_UnknownError;
    }
}

const char* GuardFrame::AnswerFullErrorText()
{
    Orbel& orbel = Orbel::Instance();
    return orbel.SetResult(orbel.GetFullErrorText());
}

const char* GuardFrame::AnswerResultBuffer()
{
    return Orbel::Instance().GetResult();
}

const char* GuardFrame::HoldEscapedMessage(const Utilities::Exception& failure) noexcept
{
    // Each thread keeps its own copy, valid until its next failure of this kind.
    thread_local Utilities::String escapedMessage;
    try {
        escapedMessage = *failure.Text();
        return escapedMessage.CString();
    } catch (...) {
        // The copy of the text failed, for want of memory: a fixed text is all that is left.
        return unknownException;
    }
}
