#include "utilities/platform/ThreadImplementation_PC.h"

#include <system_error>

#include "utilities/ComponentCreatorNormal.h"
#include "utilities/ExceptionMultithreading.h"
#include "utilities/Thread.h"

namespace Utilities {

namespace {

ComponentCreatorNormal<ThreadImplementation_PC> threadCreator(
    "ThreadImplementation", "$Revision: 1.4 $", "Multithreading");

}

// A thread still running here was never stopped; its Thread waits for it.
ThreadImplementation_PC::~ThreadImplementation_PC()
{
    if (worker.joinable()) {
        worker.detach();
    }
}

Diagnostics::String ThreadImplementation_PC::GetValueString() const
{
    if (!completion) {
        return "Thread not started";
    }
    const auto exitCode = ExitCode();
    if (!exitCode) {
        return "Thread running";
    }
    return Diagnostics::String("Thread ended with exit code ") +
        Diagnostics::String(static_cast<unsigned long>(*exitCode));
}

void ThreadImplementation_PC::Stop(unsigned long waitMs)
{
    if (!worker.joinable()) {
        return;
    }
    if (completion->WaitFor(waitMs)) {
        worker.join();
        return;
    }
    worker.detach();
    overran = true;
}

void ThreadImplementation_PC::Start(Thread* thread)
{
    if (worker.joinable()) {
        worker.detach();
    }
    completion = std::make_shared<ThreadCompletion>();
    overran = false;
    thread->EnterRun();
    try {
        worker = std::thread(&ThreadImplementation_PC::Execute, thread, completion);
    } catch (const std::system_error&) {
        thread->LeaveRun();
        throw ExceptionMultithreading("Could not start thread");
    }
}

std::optional<uint32_t> ThreadImplementation_PC::ExitCode() const
{
    if (overran) {
        return exitCodeOfOverrun;
    }
    return completion ? completion->ExitCode() : std::nullopt;
}

void ThreadImplementation_PC::Execute(Thread* thread, std::shared_ptr<ThreadCompletion> completion)
{
    completion->Finish(RunCaught(thread));
    thread->LeaveRun();
}

uint32_t ThreadImplementation_PC::RunCaught(Thread* thread)
{
    try {
        return thread->Run();
    } catch (...) {
        // A thread's failure has no caller to reach: it ends the thread with the failure's exit code.
        return exitCodeOfFailure;
    }
}

}
