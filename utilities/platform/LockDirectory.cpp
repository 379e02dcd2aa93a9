#include "utilities/platform/LockDirectory.h"

#include <cstdint>
#include <cstdlib>

#include "utilities/platform/RuntimeDirectory.h"

namespace Utilities {

namespace {

constexpr std::size_t longestEncodedName = 180;
const char* const hexDigits = "0123456789ABCDEF";

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
    if (chosen != nullptr && *chosen != '\0') {
        RuntimeDirectory::MakeChosen(chosen);
        return chosen;
    }
    return RuntimeDirectory::Prepare("orbel-locks");
}

}
