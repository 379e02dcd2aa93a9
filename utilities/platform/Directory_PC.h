#pragma once

#include <string>
#include <vector>

#include "utilities/Directory.h"
#include "utilities/String.h"

namespace Utilities {

// A Directory of this system, in the neutral form of its path.
class Directory_PC : public Directory {
public:
    Directory_PC(long kind, const String& given);

    void CreateSubdirectory(const String& name) override;
    std::vector<SmartPointer<Directory>> GetSubdirectories(const String& pattern) const override;
    std::vector<SmartPointer<File>> GetFiles(const String& name, const String& extension) const override;
    SmartPointer<Directory> GetParent() const override;
    String GetName() const override;
    String GetPath() const override;
    Diagnostics::String GetValueString() const override;

    static bool IsDirectory(const String& path);

private:
    static String PathOfKind(long kind, const String& given);
    static String WorkingDirectory();
    static String ProgramDirectory();
    static String SettingsDirectory();

    String PathOf(const std::string& entry) const;

    String path;
    long kind;
};

}
