#include "utilities/platform/SystemFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace Utilities {

namespace {

struct ListingCloser {
    void operator()(DIR* listing) const { ::closedir(listing); }
};

// The user's home from the environment, else from the user database.
std::string HomeDirectory()
{
    const char* home = std::getenv("HOME");
    if (home != nullptr && home[0] != '\0') {
        return home;
    }
    const passwd* user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

}

String SystemFiles::ProgramPath()
{
    std::string program(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", program.data(), program.size());
        if (length < 0) {
            return String();
        }
        if (static_cast<std::string::size_type>(length) < program.size()) {
            program.resize(static_cast<std::string::size_type>(length));
            return String(program);
        }
        program.resize(program.size() * 2);
    }
}

String SystemFiles::WorkingDirectory()
{
    const std::unique_ptr<char, decltype(&std::free)> working(::getcwd(nullptr, 0), &std::free);
    return working == nullptr ? String() : String(working.get());
}

// By the desktop's rule for configuration folders: $XDG_CONFIG_HOME when it is an absolute path,
// else ~/.config.
String SystemFiles::UserSettingsDirectory()
{
    const char* configuration = std::getenv("XDG_CONFIG_HOME");
    if (configuration != nullptr && configuration[0] == '/') {
        return String(configuration);
    }
    return String(HomeDirectory() + "/.config");
}

String SystemFiles::RootPath()
{
    return String("/");
}

bool SystemFiles::Exists(const String& path)
{
    struct stat status { };
    return ::stat(path.CString(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool SystemFiles::IsDirectory(const String& path)
{
    struct stat status { };
    return ::stat(path.CString(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool SystemFiles::MakeDirectory(const String& path)
{
    return ::mkdir(path.CString(), 0777) == 0 || (errno == EEXIST && IsDirectory(path));
}

std::vector<std::string> SystemFiles::EntriesMatching(const String& directory, const String& pattern)
{
    std::vector<std::string> entries;
    const std::unique_ptr<DIR, ListingCloser> listing(::opendir(directory.CString()));
    if (listing == nullptr) {
        return entries;
    }
    while (const dirent* entry = ::readdir(listing.get())) {
        if (::fnmatch(pattern.CString(), entry->d_name, FNM_CASEFOLD) == 0) {
            entries.emplace_back(entry->d_name);
        }
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::optional<SystemFiles::Status> SystemFiles::StatusOfReadable(const String& path)
{
    const int descriptor = ::open(path.CString(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return std::nullopt;
    }
    struct stat status { };
    const bool known = ::fstat(descriptor, &status) == 0;
    ::close(descriptor);
    if (!known) {
        return std::nullopt;
    }
    return Status{static_cast<std::uint64_t>(status.st_size), status.st_mtime};
}

bool SystemFiles::CanOpen(const String& path, bool forWriting)
{
    const int descriptor = ::open(path.CString(), (forWriting ? O_RDWR : O_RDONLY) | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    ::close(descriptor);
    return true;
}

bool SystemFiles::Delete(const String& path)
{
    return ::unlink(path.CString()) == 0;
}

bool SystemFiles::Replace(const String& replacement, const String& target)
{
    return std::rename(replacement.CString(), target.CString()) == 0;
}

}
