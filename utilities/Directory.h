#pragma once

#include <vector>

#include "diagnostics/String.h"
#include "utilities/File.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace Utilities {

// A directory of the file system, named by a path in the neutral form.
class Directory {
public:
    enum Kind : long {
        // The working directory of the process.
        DirectoryCurrent = 0,
        // The directory of the host program, not of this module.
        DirectoryApplication = 1,
        // The directory of the user's settings of this system.
        DirectoryWindows = 2,
        // The path given.
        DirectoryGiven = 3,
        // The root of the file system; it stands for the list of all file systems' roots.
        DirectoryDrives = 4,
    };

    // A kind other than those above fails with ExceptionOutOfBound; DirectoryGiven for a path
    // where nothing exists fails with ExceptionResourceNotAvailable.
    static SmartPointer<Directory> Create(long kind, const String& path = String());
    // Whether a directory exists at path; asks first where a failure would cost a translated exception.
    static bool Exists(const String& path);

    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    virtual ~Directory();

    // A directory that exists already is no failure; any other refusal is
    // ExceptionResourceNotAvailable.
    virtual void CreateSubdirectory(const String& name) = 0;

    // The entries matching the wildcard pattern whose names have no dot, sorted by name.
    virtual std::vector<SmartPointer<Directory>> GetSubdirectories(const String& pattern) const = 0;

    // The entries matching name.extension (wildcards allowed) whose names have a dot and more
    // than two characters, sorted by name.
    virtual std::vector<SmartPointer<File>> GetFiles(const String& name, const String& extension) const = 0;

    virtual SmartPointer<Directory> GetParent() const = 0;
    virtual String GetName() const = 0;
    virtual String GetPath() const = 0;
    virtual Diagnostics::String GetValueString() const = 0;

protected:
    Directory() = default;
};

}
