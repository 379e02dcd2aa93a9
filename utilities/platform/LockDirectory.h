#pragma once

#include <string>

namespace Utilities {

// Where the files behind named locks lie. Every process of the user finds the same directory:
// $ORBEL_LOCK_DIR when set (tests and tools give each run its own), else the user's runtime
// directory "orbel-locks" (RuntimeDirectory). The directory is made on first use.
class LockDirectory {
public:
    // The lock file of a lock name. Raises ExceptionMultithreading when the directory can't be
    // made or isn't safe to use.
    static std::string LockFilePath(const std::string& lockName);

    // The lock name as a file name: letters, digits, '-', '_' and inner dots stay, every other
    // byte becomes %XX, so that two names never share a file. A very long name is cut and
    // marked with a hash of the whole.
    static std::string FileName(const std::string& lockName);

private:
    static std::string PrepareDirectory();
};

}
