#include "diagnostics/WinDebugPublisher.h"

#include <mutex>

#include "utilities/Exception.h"

namespace Diagnostics {

namespace {

constexpr char outputName[] = "DebugOutput.txt";

std::mutex instanceCreation;
WinDebugPublisher* instance = nullptr;

}

void WinDebugPublisher::EnsureExists()
{
    const std::lock_guard<std::mutex> guard(instanceCreation);
    if (instance == nullptr) {
        instance = new WinDebugPublisher;
    }
}

WinDebugPublisher::WinDebugPublisher() : StringPublisher(true), output(OpenedOutput()) { }

// A fresh file; null when the working directory won't take one.
Utilities::SmartPointer<Utilities::File> WinDebugPublisher::OpenedOutput()
{
    Utilities::SmartPointer<Utilities::File> file = Utilities::File::Create(outputName);
    file->Delete();
    try {
        file->Open(false);
    } catch (const Utilities::Exception&) {
        return Utilities::SmartPointer<Utilities::File>();
    }
    return file;
}

WinDebugPublisher::~WinDebugPublisher()
{
    const std::lock_guard<std::mutex> guard(instanceCreation);
    instance = nullptr;
}

void WinDebugPublisher::Publish(const String& line)
{
    if (output.IsNull()) {
        return;
    }
    try {
        output->Write(line.CString(), static_cast<long>(line.Length()));
        output->Write("\n", 1);
    } catch (const Utilities::Exception&) {
        output = Utilities::SmartPointer<Utilities::File>();
    }
}

}
