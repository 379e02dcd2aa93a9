#include "utilities/platform/LockDirectory.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#include "utilities/ExceptionMultithreading.h"

namespace Utilities {

namespace {

constexpr std::size_t longestEncodedName = 180;
const char* const hexDigits = "0123456789ABCDEF";

bool IsSet(const char* value)
{
    return value != nullptr && *value != '\0';
}

bool KeepsAsItIs(char c, std::size_t position)
{
    const bool alphanumeric = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    return alphanumeric || c == '-' || c == '_' || (c == '.' && position > 0);
}

std::string Hex(uint64_t value)
{
    std::string text(16, '0');
    for (std::size_t i = 16; i-- > 0; value >>= 4) {
        text[i] = hexDigits[value & 0xF];
    }
    return text;
}

// FNV-1a: the same in every process, unlike std::hash.
uint64_t StableHash(const std::string& text)
{
    uint64_t hash = 14695981039346656037ULL;
    for (unsigned char c : text) {
        hash = (hash ^ c) * 1099511628211ULL;
    }
    return hash;
}

[[noreturn]] void Fail(const std::string& what, const std::string& path, int error)
{
    throw ExceptionMultithreading((what + path + " (" + std::strerror(error) + ")").c_str());
}

}

std::string LockDirectory::LockFilePath(const std::string& lockName)
{
    return PrepareDirectory() + "/" + FileName(lockName) + ".lock";
}

std::string LockDirectory::FileName(const std::string& lockName)
{
    std::string encoded;
    for (std::size_t i = 0; i < lockName.size(); ++i) {
        const char c = lockName[i];
        if (KeepsAsItIs(c, i)) {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += '%';
            encoded += hexDigits[byte >> 4];
            encoded += hexDigits[byte & 0xF];
        }
    }
    if (encoded.size() > longestEncodedName) {
        // '~' is always encoded above, so a cut name never equals a short one.
        encoded = encoded.substr(0, longestEncodedName) + "~" + Hex(StableHash(lockName));
    }
    return encoded;
}

std::string LockDirectory::PrepareDirectory()
{
    const char* chosen = std::getenv("ORBEL_LOCK_DIR");
    if (IsSet(chosen)) {
        MakeDirectory(chosen, false);
        return chosen;
    }
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::string path =
        IsSet(runtime) ? std::string(runtime) + "/orbel-locks" : "/tmp/orbel-locks-" + std::to_string(::getuid());
    MakeDirectory(path, true);
    return path;
}

// In a shared directory such as /tmp another user could have put a directory or a link of
// his own in our place; such a directory is refused rather than used.
void LockDirectory::MakeDirectory(const std::string& path, bool mustBeOwnedByUser)
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
