#pragma once

#include <stdlib.h>

#include <optional>
#include <string>

#include "tests/TemporaryDirectory.h"

// Points the user's settings of this system at a temporary directory while the object lives.
// The settings file of the test program is "<that directory>/orbel/test_utilities.ini".
class SettingsHome {
public:
    SettingsHome() : SettingsHome(std::string()) {}

    // A base directory below the temporary one, which needn't exist.
    explicit SettingsHome(const std::string& below)
    {
        if (const char* current = ::getenv(variable)) {
            former = current;
        }
        const std::string base = below.empty() ? home.Path() : home / below;
        ::setenv(variable, base.c_str(), 1);
        settingsFile = base + "/orbel/test_utilities.ini";
    }

    ~SettingsHome()
    {
        if (former) {
            ::setenv(variable, former->c_str(), 1);
        } else {
            ::unsetenv(variable);
        }
    }

    SettingsHome(const SettingsHome&) = delete;
    SettingsHome& operator=(const SettingsHome&) = delete;

    const TemporaryDirectory& Home() const { return home; }
    const std::string& SettingsFile() const { return settingsFile; }

    void WriteSettings(const std::string& content) const
    {
        std::filesystem::create_directories(std::filesystem::path(settingsFile).parent_path());
        std::ofstream(settingsFile, std::ios::binary) << content;
    }

    std::string ReadSettings() const
    {
        std::ifstream file(settingsFile, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

private:
    static constexpr char variable[] = "XDG_CONFIG_HOME";

    TemporaryDirectory home;
    std::optional<std::string> former;
    std::string settingsFile;
};
