#include "utilities/platform/SystemFiles.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <cwctype>

#include "utilities/platform/windows/WideText.h"

namespace Utilities {

namespace {

// FILETIME counts 100 ns steps since 1601.
constexpr std::uint64_t fileTimeOf1970 = 116444736000000000ULL;
constexpr std::uint64_t fileTimeStepsPerSecond = 10000000ULL;

std::wstring Wide(const String& path)
{
    return WideText::FromNarrow(path.ToStdString());
}

HANDLE OpenExisting(const String& path, DWORD access)
{
    return ::CreateFileW(Wide(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// '*' and '?' as the command line knows them, letters without regard to case.
bool Matches(const wchar_t* pattern, const wchar_t* name)
{
    if (*pattern == L'\0') {
        return *name == L'\0';
    }
    if (*pattern == L'*') {
        return Matches(pattern + 1, name) || (*name != L'\0' && Matches(pattern, name + 1));
    }
    const bool same = *pattern == L'?' || std::towlower(*pattern) == std::towlower(*name);
    return *name != L'\0' && same && Matches(pattern + 1, name + 1);
}

}

String SystemFiles::ProgramPath()
{
    std::wstring program(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
        if (length == 0) {
            return String();
        }
        if (length < program.size()) {
            program.resize(length);
            return String(WideText::NeutralPath(program));
        }
        program.resize(program.size() * 2);
    }
}

String SystemFiles::WorkingDirectory()
{
    const DWORD size = ::GetCurrentDirectoryW(0, nullptr);
    std::wstring working(size, L'\0');
    const DWORD length = ::GetCurrentDirectoryW(size, working.data());
    if (length == 0 || length >= size) {
        return String();
    }
    working.resize(length);
    return String(WideText::NeutralPath(working));
}

// The roaming application data of the user, %APPDATA%.
String SystemFiles::UserSettingsDirectory()
{
    wchar_t folder[MAX_PATH];
    if (::SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK) {
        return WorkingDirectory();
    }
    return String(WideText::NeutralPath(folder));
}

String SystemFiles::RootPath()
{
    const std::string working = WorkingDirectory().ToStdString();
    return String(working.size() >= 2 && working[1] == ':' ? working.substr(0, 2) + "/" : std::string("C:/"));
}

bool SystemFiles::Exists(const String& path)
{
    if (::GetFileAttributesW(Wide(path).c_str()) != INVALID_FILE_ATTRIBUTES) {
        return true;
    }
    const DWORD error = ::GetLastError();
    return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

bool SystemFiles::IsDirectory(const String& path)
{
    const DWORD attributes = ::GetFileAttributesW(Wide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool SystemFiles::MakeDirectory(const String& path)
{
    return ::CreateDirectoryW(Wide(path).c_str(), nullptr) != 0 ||
        (::GetLastError() == ERROR_ALREADY_EXISTS && IsDirectory(path));
}

std::vector<std::string> SystemFiles::EntriesMatching(const String& directory, const String& pattern)
{
    std::vector<std::string> entries;
    const std::wstring widePattern = Wide(pattern);
    WIN32_FIND_DATAW found{};
    const HANDLE search = ::FindFirstFileW((Wide(directory) + L"/*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return entries;
    }
    do {
        if (Matches(widePattern.c_str(), found.cFileName)) {
            entries.push_back(WideText::ToNarrow(found.cFileName));
        }
    } while (::FindNextFileW(search, &found) != 0);
    ::FindClose(search);
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::optional<SystemFiles::Status> SystemFiles::StatusOfReadable(const String& path)
{
    const HANDLE file = OpenExisting(path, GENERIC_READ);
    if (file == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    LARGE_INTEGER size{};
    FILETIME written{};
    const bool known = ::GetFileSizeEx(file, &size) != 0 && ::GetFileTime(file, nullptr, nullptr, &written) != 0;
    ::CloseHandle(file);
    if (!known) {
        return std::nullopt;
    }
    const std::uint64_t steps = (static_cast<std::uint64_t>(written.dwHighDateTime) << 32) | written.dwLowDateTime;
    const auto seconds = static_cast<std::time_t>((steps - fileTimeOf1970) / fileTimeStepsPerSecond);
    return Status{static_cast<std::uint64_t>(size.QuadPart), seconds};
}

bool SystemFiles::CanOpen(const String& path, bool forWriting)
{
    const HANDLE file = OpenExisting(path, forWriting ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    ::CloseHandle(file);
    return true;
}

bool SystemFiles::Delete(const String& path)
{
    return ::DeleteFileW(Wide(path).c_str()) != 0;
}

bool SystemFiles::Replace(const String& replacement, const String& target)
{
    return ::MoveFileExW(Wide(replacement).c_str(), Wide(target).c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

}
