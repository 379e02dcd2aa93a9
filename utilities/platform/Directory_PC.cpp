#include "utilities/platform/Directory_PC.h"

#include <dirent.h>
#include <fnmatch.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/LanguageTranslator.h"
#include "utilities/PathForm.h"

namespace Utilities {

namespace {

constexpr char rootPath[] = "/";
constexpr char settingsFolder[] = "orbel";

struct ListingCloser {
    void operator()(DIR* listing) const { ::closedir(listing); }
};

bool HasDot(const std::string& name)
{
    return name.find('.') != std::string::npos;
}

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

Directory_PC::Directory_PC(long kind, const String& given) : path(PathOfKind(kind, given)), kind(kind)
{
    if (kind == DirectoryGiven && !Exists(path)) {
        throw ExceptionResourceNotAvailable(Translated("Error: Directory %DIR% does not exist", "%DIR%", given));
    }
}

String Directory_PC::PathOfKind(long kind, const String& given)
{
    switch (kind) {
    case DirectoryCurrent:
        return WorkingDirectory();
    case DirectoryApplication:
        return ProgramDirectory();
    case DirectoryWindows:
        return SettingsDirectory();
    case DirectoryGiven:
        return PathForm::WithoutTrailingSeparator(given);
    case DirectoryDrives:
        return String(rootPath);
    default:
        throw ExceptionOutOfBound(String("Unknown directory kind ") + String(kind));
    }
}

String Directory_PC::WorkingDirectory()
{
    const std::unique_ptr<char, decltype(&std::free)> working(::getcwd(nullptr, 0), &std::free);
    if (working == nullptr) {
        throw ExceptionResourceNotAvailable("The working directory of the process is gone");
    }
    return String(working.get());
}

// The host program's file, whatever module this code lies in.
String Directory_PC::ProgramDirectory()
{
    std::string program(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", program.data(), program.size());
        if (length < 0) {
            throw ExceptionResourceNotAvailable("The program file of the process can't be found");
        }
        if (static_cast<std::string::size_type>(length) < program.size()) {
            program.resize(static_cast<std::string::size_type>(length));
            return PathForm::Parent(String(program));
        }
        program.resize(program.size() * 2);
    }
}

// Where this system keeps the user's settings, by the desktop's rule for configuration folders:
// $XDG_CONFIG_HOME when it is an absolute path, else ~/.config.
String Directory_PC::SettingsDirectory()
{
    const char* configuration = std::getenv("XDG_CONFIG_HOME");
    if (configuration != nullptr && configuration[0] == '/') {
        return String(std::string(configuration) + "/" + settingsFolder);
    }
    return String(HomeDirectory() + "/.config/" + settingsFolder);
}

// Only what the system says is missing counts as missing; a path it won't tell about counts
// as present.
bool Directory_PC::Exists(const String& path)
{
    struct stat status { };
    return ::stat(path.CString(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool Directory_PC::IsDirectory(const String& path)
{
    struct stat status { };
    return ::stat(path.CString(), &status) == 0 && S_ISDIR(status.st_mode);
}

void Directory_PC::CreateSubdirectory(const String& name)
{
    const String subdirectory = PathOf(name.ToStdString());
    if (::mkdir(subdirectory.CString(), 0777) != 0 && !(errno == EEXIST && IsDirectory(subdirectory))) {
        throw ExceptionResourceNotAvailable(
            Translated("Creation of subdirectory '%DIRECTORYNAME%' failed", "%DIRECTORYNAME%", name));
    }
}

// Whatever matches and has no dot counts, without a look at what kind of entry it is.
std::vector<SmartPointer<Directory>> Directory_PC::GetSubdirectories(const String& pattern) const
{
    std::vector<SmartPointer<Directory>> subdirectories;
    if (kind == DirectoryDrives) {
        subdirectories.push_back(Directory::Create(DirectoryGiven, String(rootPath)));
        return subdirectories;
    }
    for (const std::string& entry : EntriesMatching(pattern)) {
        if (!HasDot(entry)) {
            subdirectories.push_back(Directory::Create(DirectoryGiven, PathOf(entry)));
        }
    }
    return subdirectories;
}

std::vector<SmartPointer<File>> Directory_PC::GetFiles(const String& name, const String& extension) const
{
    std::vector<SmartPointer<File>> files;
    for (const std::string& entry : EntriesMatching(name + String('.') + extension)) {
        if (HasDot(entry) && entry.size() > 2) {
            files.push_back(File::Create(PathOf(entry)));
        }
    }
    return files;
}

// Names are matched without regard to case, as the system's own names are written in any case.
std::vector<std::string> Directory_PC::EntriesMatching(const String& pattern) const
{
    std::vector<std::string> entries;
    const std::unique_ptr<DIR, ListingCloser> listing(::opendir(path.CString()));
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

String Directory_PC::PathOf(const std::string& entry) const
{
    const std::string directory = path.ToStdString();
    return String(directory == rootPath ? directory + entry : directory + "/" + entry);
}

SmartPointer<Directory> Directory_PC::GetParent() const
{
    return Directory::Create(DirectoryGiven, PathForm::Parent(path));
}

String Directory_PC::GetName() const
{
    return PathForm::LastComponent(path);
}

String Directory_PC::GetPath() const
{
    return path;
}

Diagnostics::String Directory_PC::GetValueString() const
{
    return Diagnostics::String(path.CString());
}

}
