#pragma once

#include <string>

namespace Utilities {

// A directory of the user's own for files that matter only while processes run: on POSIX
// "<name>" in $XDG_RUNTIME_DIR, else /tmp/<name>-<uid>; on Windows "<name>" in the user's
// temporary folder. Made on first use.
class RuntimeDirectory {
public:
    // Raises ExceptionMultithreading when the directory can't be made or isn't safe to use.
    static std::string Prepare(const std::string& name);
    // A directory that the caller chose, made if missing; raises as above.
    static void MakeChosen(const std::string& path);
};

}
