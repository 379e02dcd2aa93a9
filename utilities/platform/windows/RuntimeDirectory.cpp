#include "utilities/platform/RuntimeDirectory.h"

#include <windows.h>

#include <system_error>

#include "utilities/ExceptionMultithreading.h"
#include "utilities/platform/windows/WideText.h"

namespace Utilities {

namespace {

[[noreturn]] void Fail(const std::string& what, const std::string& path, DWORD error)
{
    const std::string reason = std::system_category().message(static_cast<int>(error));
    throw ExceptionMultithreading((what + path + " (" + reason + ")").c_str());
}

// The user's temporary folder is his alone, so what lies in it needs no check of its owner.
void MakeDirectory(const std::string& path)
{
    const std::wstring wide = WideText::FromNarrow(path);
    if (::CreateDirectoryW(wide.c_str(), nullptr) == 0 && ::GetLastError() != ERROR_ALREADY_EXISTS) {
        Fail("Could not create lock directory ", path, ::GetLastError());
    }
    const DWORD attributes = ::GetFileAttributesW(wide.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        Fail("Could not create lock directory ", path, ::GetLastError());
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        Fail("Lock directory is no directory: ", path, ERROR_DIRECTORY);
    }
}

}

std::string RuntimeDirectory::Prepare(const std::string& name)
{
    wchar_t temporary[MAX_PATH + 1];
    const DWORD length = ::GetTempPathW(MAX_PATH + 1, temporary);
    if (length == 0 || length > MAX_PATH) {
        Fail("Could not create lock directory ", name, ::GetLastError());
    }
    const std::string path = WideText::NeutralPath(temporary) + name;
    MakeDirectory(path);
    return path;
}

void RuntimeDirectory::MakeChosen(const std::string& path)
{
    MakeDirectory(path);
}

}
