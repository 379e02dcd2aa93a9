#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "tests/TemporaryDirectory.h"

// Sets an environment variable for the life of the object, and puts back what was there.
class EnvironmentSetting {
public:
    EnvironmentSetting(const char* name, const std::string& value) : name(name)
    {
        if (const char* former = ::getenv(name)) {
            previous = former;
        }
        ::setenv(name, value.c_str(), 1);
    }

    ~EnvironmentSetting()
    {
        if (previous) {
            ::setenv(name, previous->c_str(), 1);
        } else {
            ::unsetenv(name);
        }
    }

    EnvironmentSetting(const EnvironmentSetting&) = delete;
    EnvironmentSetting& operator=(const EnvironmentSetting&) = delete;

private:
    const char* name;
    std::optional<std::string> previous;
};

// Points the user's settings of this system at a temporary directory while the object lives.
// The settings file of the test program is "<that directory>/orbel/test_utilities.ini".
class SettingsHome {
public:
    // A base directory below the temporary one, which needn't exist.
    explicit SettingsHome(const std::string& below = std::string())
        : base(below.empty() ? home.Path() : home / below), setting("XDG_CONFIG_HOME", base),
          settingsFile(base + "/orbel/test_utilities.ini")
    {
    }

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
    TemporaryDirectory home;
    const std::string base;
    const EnvironmentSetting setting;
    const std::string settingsFile;
};
