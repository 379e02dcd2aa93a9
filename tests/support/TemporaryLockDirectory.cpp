#include "tests/support/TemporaryLockDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <vector>

TemporaryLockDirectory::TemporaryLockDirectory()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "orbel-lock-test-XXXXXX").string();
    std::vector<char> writable(pattern.begin(), pattern.end());
    writable.push_back('\0');
    path = ::mkdtemp(writable.data()) != nullptr ? writable.data() : "";
    ::setenv("ORBEL_LOCK_DIR", path.c_str(), 1);
}

TemporaryLockDirectory::~TemporaryLockDirectory()
{
    ::unsetenv("ORBEL_LOCK_DIR");
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

bool TemporaryLockDirectory::Contains(const std::string& fileName) const
{
    return std::filesystem::exists(std::filesystem::path(path) / fileName);
}
