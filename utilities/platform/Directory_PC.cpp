#include "utilities/platform/Directory_PC.h"

#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/LanguageTranslator.h"
#include "utilities/PathForm.h"
#include "utilities/platform/SystemFiles.h"

namespace Utilities {

namespace {

constexpr char settingsFolder[] = "orbel";

bool HasDot(const std::string& name)
{
    return name.find('.') != std::string::npos;
}

}

Directory_PC::Directory_PC(long kind, const String& given) : path(PathOfKind(kind, given)), kind(kind)
{
    if (kind == DirectoryGiven && !SystemFiles::Exists(path)) {
        throw ExceptionResourceNotAvailable(Translated("Error: Directory %DIR% does not exist", "%DIR%", given));
    }
}

String Directory_PC::PathOfKind(long kind, const String& given)
{
    switch (kind) {
    case DirectoryCurrent:
        return WorkingDirectory();
    case DirectoryApplication:
        return ProgramDirectory();
    case DirectoryWindows:
        return SettingsDirectory();
    case DirectoryGiven:
        return PathForm::WithoutTrailingSeparator(given);
    case DirectoryDrives:
        return SystemFiles::RootPath();
    default:
        throw ExceptionOutOfBound(String("Unknown directory kind ") + String(kind));
    }
}

String Directory_PC::WorkingDirectory()
{
    const String working = SystemFiles::WorkingDirectory();
    if (working.IsEmpty()) {
        throw ExceptionResourceNotAvailable("The working directory of the process is gone");
    }
    return working;
}

// The host program's file, whatever module this code lies in.
String Directory_PC::ProgramDirectory()
{
    const String program = SystemFiles::ProgramPath();
    if (program.IsEmpty()) {
        throw ExceptionResourceNotAvailable("The program file of the process can't be found");
    }
    return PathForm::Parent(program);
}

String Directory_PC::SettingsDirectory()
{
    return SystemFiles::UserSettingsDirectory() + String('/') + String(settingsFolder);
}

bool Directory_PC::IsDirectory(const String& path)
{
    return SystemFiles::IsDirectory(path);
}

void Directory_PC::CreateSubdirectory(const String& name)
{
    const String subdirectory = PathOf(name.ToStdString());
    if (!SystemFiles::MakeDirectory(subdirectory)) {
        throw ExceptionResourceNotAvailable(
            Translated("Creation of subdirectory '%DIRECTORYNAME%' failed", "%DIRECTORYNAME%", name));
    }
}

// Whatever matches and has no dot counts, without a look at what kind of entry it is.
std::vector<SmartPointer<Directory>> Directory_PC::GetSubdirectories(const String& pattern) const
{
    std::vector<SmartPointer<Directory>> subdirectories;
    if (kind == DirectoryDrives) {
        subdirectories.push_back(Directory::Create(DirectoryGiven, SystemFiles::RootPath()));
        return subdirectories;
    }
    for (const std::string& entry : SystemFiles::EntriesMatching(path, pattern)) {
        if (!HasDot(entry)) {
            subdirectories.push_back(Directory::Create(DirectoryGiven, PathOf(entry)));
        }
    }
    return subdirectories;
}

std::vector<SmartPointer<File>> Directory_PC::GetFiles(const String& name, const String& extension) const
{
    std::vector<SmartPointer<File>> files;
    for (const std::string& entry : SystemFiles::EntriesMatching(path, name + String('.') + extension)) {
        if (HasDot(entry) && entry.size() > 2) {
            files.push_back(File::Create(PathOf(entry)));
        }
    }
    return files;
}

String Directory_PC::PathOf(const std::string& entry) const
{
    const std::string directory = path.ToStdString();
    return String(directory.ends_with('/') ? directory + entry : directory + "/" + entry);
}

SmartPointer<Directory> Directory_PC::GetParent() const
{
    return Directory::Create(DirectoryGiven, PathForm::Parent(path));
}

String Directory_PC::GetName() const
{
    return PathForm::LastComponent(path);
}

String Directory_PC::GetPath() const
{
    return path;
}

Diagnostics::String Directory_PC::GetValueString() const
{
    return Diagnostics::String(path.CString());
}

}
