#pragma once

#include <string>

#include "utilities/Directory.h"
#include "utilities/Preferences.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace Utilities {

// Preferences in the settings file "<program>.ini" in the user's settings directory of this
// system, where <program> is the host program's name up to its first dot; Get and Set name the
// same file.
class Preferences_PC : public Preferences {
public:
    // The value is cut to 1023 characters.
    String Get(const String& section, const String& key, const String& defaultValue) override;
    // The settings directory is made when it is missing. The file is replaced as a whole, so a
    // refused write leaves the former settings as they were.
    void Set(const String& section, const String& key, const String& value) override;

    // The name of the settings file of the program at programPath: "/opt/My.Tool.bin" gives
    // "My.ini".
    static String SettingsFileName(const String& programPath);

private:
    static String SettingsDirectoryPath();
    static String SettingsPath();
    // Nothing of it may fail through a translated message: the language service reads its
    // settings here while it is being made.
    static std::string ReadSettings();
    static void WriteSettings(const std::string& text);
    static SmartPointer<Directory> DirectoryMadeIfMissing(const String& path);
};

}
