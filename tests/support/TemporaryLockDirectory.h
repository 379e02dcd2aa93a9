#pragma once

#include <string>

// A lock directory of the test's own, named by ORBEL_LOCK_DIR while the object lives, so that
// tests running side by side never share a named lock. Removed with its lock files at the end.
class TemporaryLockDirectory {
public:
    TemporaryLockDirectory();
    ~TemporaryLockDirectory();

    TemporaryLockDirectory(const TemporaryLockDirectory&) = delete;
    TemporaryLockDirectory& operator=(const TemporaryLockDirectory&) = delete;

    const std::string& Path() const { return path; }
    bool Contains(const std::string& fileName) const;

private:
    std::string path;
};
