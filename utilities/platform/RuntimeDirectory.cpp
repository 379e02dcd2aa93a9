#include "utilities/platform/RuntimeDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#include "utilities/ExceptionMultithreading.h"

namespace Utilities {

namespace {

bool IsSet(const char* value)
{
    return value != nullptr && *value != '\0';
}

[[noreturn]] void Fail(const std::string& what, const std::string& path, int error)
{
    throw ExceptionMultithreading((what + path + " (" + std::strerror(error) + ")").c_str());
}

// In a shared directory such as /tmp another user could have put a directory or a link of
// his own in our place; such a directory is refused rather than used.
void MakeDirectory(const std::string& path, bool mustBeOwnedByUser)
{
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        Fail("Could not create lock directory ", path, errno);
    }
    struct stat status { };
    const int result = mustBeOwnedByUser ? ::lstat(path.c_str(), &status) : ::stat(path.c_str(), &status);
    if (result != 0) {
        Fail("Could not create lock directory ", path, errno);
    }
    if (!S_ISDIR(status.st_mode)) {
        Fail("Lock directory is no directory: ", path, ENOTDIR);
    }
    if (mustBeOwnedByUser && status.st_uid != ::getuid()) {
        Fail("Lock directory belongs to another user: ", path, EPERM);
    }
}

}

std::string RuntimeDirectory::Prepare(const std::string& name)
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::string path =
        IsSet(runtime) ? std::string(runtime) + "/" + name : "/tmp/" + name + "-" + std::to_string(::getuid());
    MakeDirectory(path, true);
    return path;
}

void RuntimeDirectory::MakeChosen(const std::string& path)
{
    MakeDirectory(path, false);
}

}
