#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "utilities/String.h"

namespace Utilities {

// What only the system can tell or do about files and directories. Paths are in the neutral
// form (PathForm); a failure is an answer, never an exception.
class SystemFiles {
public:
    struct Status {
        std::uint64_t size = 0;
        std::time_t modified = 0;
    };

    // The host program's file, whatever module this code lies in; empty when the system won't say.
    static String ProgramPath();
    // The process's working directory; empty when it is gone.
    static String WorkingDirectory();
    // Where this system keeps the settings of the user's programs.
    static String UserSettingsDirectory();
    // The root of the file system, or of the drive of the working directory.
    static String RootPath();

    // Only what the system says is missing counts as missing; a path it won't tell about counts
    // as present.
    static bool Exists(const String& path);
    static bool IsDirectory(const String& path);
    // True when made, or when a directory is there already.
    static bool MakeDirectory(const String& path);
    // The names in the directory that match the wildcard pattern without regard to case, sorted.
    static std::vector<std::string> EntriesMatching(const String& directory, const String& pattern);

    // The status of a file that can be opened for reading.
    static std::optional<Status> StatusOfReadable(const String& path);
    static bool CanOpen(const String& path, bool forWriting);
    static bool Delete(const String& path);
    // Puts `replacement` in the place of `target` in one step, a target that exists included.
    static bool Replace(const String& replacement, const String& target);
};

}
