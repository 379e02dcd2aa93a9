#pragma once

#include <filesystem>
#include <string>

// Makes a directory the working directory while the object lives.
class WorkingDirectoryChange {
public:
    explicit WorkingDirectoryChange(const std::string& directory) : former(std::filesystem::current_path())
    {
        std::filesystem::current_path(directory);
    }

    ~WorkingDirectoryChange()
    {
        std::error_code ignored;
        std::filesystem::current_path(former, ignored);
    }

    WorkingDirectoryChange(const WorkingDirectoryChange&) = delete;
    WorkingDirectoryChange& operator=(const WorkingDirectoryChange&) = delete;

private:
    std::filesystem::path former;
};
