#include "utilities/platform/Preferences_PC.h"

#include <stdexcept>

#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/Exception.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/File.h"
#include "utilities/PathForm.h"
#include "utilities/ProfileText.h"
#include "utilities/platform/SystemFiles.h"

namespace Utilities {

namespace {

ComponentCreatorSingleton<Preferences_PC> preferencesCreator("Preferences", "$Revision: 1.4 $", "Utilities");

constexpr std::string::size_type longestValue = 1023;
constexpr char settingsExtension[] = ".ini";
constexpr char replacementExtension[] = ".new";
constexpr long readBlockSize = 4096;

}

String Preferences_PC::Get(const String& section, const String& key, const String& defaultValue)
{
    try {
        const std::optional<std::string> value =
            ProfileText(ReadSettings()).Find(section.ToStdString(), key.ToStdString());
        return value ? String(value->substr(0, longestValue)) : defaultValue;
    } catch (const Exception&) {
    } catch (const std::exception&) {
    }
    return defaultValue;
}

void Preferences_PC::Set(const String& section, const String& key, const String& value)
{
    try {
        ProfileText settings(ReadSettings());
        settings.Set(section.ToStdString(), key.ToStdString(), value.ToStdString());
        WriteSettings(settings.Text());
    } catch (const Exception&) {
    } catch (const std::exception&) {
    }
}

String Preferences_PC::SettingsFileName(const String& programPath)
{
    const String programFile = PathForm::LastComponent(programPath);
    return programFile.Token(0, '.') + String(settingsExtension);
}

String Preferences_PC::SettingsDirectoryPath()
{
    return Directory::Create(Directory::DirectoryWindows)->GetPath();
}

String Preferences_PC::SettingsPath()
{
    return SettingsDirectoryPath() + String('/') + SettingsFileName(SystemFiles::ProgramPath());
}

// A file that can't be read counts as empty. The file is only opened once it is known to be
// readable, as a refused open would raise a translated message.
std::string Preferences_PC::ReadSettings()
{
    const SmartPointer<File> file = File::Create(SettingsPath());
    if (!file->CanAccess(false)) {
        return std::string();
    }
    file->Open(true);
    std::string text;
    char block[readBlockSize];
    for (long count = file->Read(block, readBlockSize); count > 0; count = file->Read(block, readBlockSize)) {
        text.append(block, static_cast<std::string::size_type>(count));
    }
    file->Close();
    return text;
}

void Preferences_PC::WriteSettings(const std::string& text)
{
    DirectoryMadeIfMissing(SettingsDirectoryPath());
    const String settingsPath = SettingsPath();
    const String replacementPath = settingsPath + String(replacementExtension);
    const SmartPointer<File> replacement = File::Create(replacementPath);
    replacement->Delete();
    replacement->Open(true);
    try {
        replacement->Write(text.data(), static_cast<long>(text.size()));
    } catch (...) {
        replacement->Close();
        replacement->Delete();
        throw;
    }
    replacement->Close();
    if (!SystemFiles::Replace(replacementPath, settingsPath)) {
        replacement->Delete();
    }
}

SmartPointer<Directory> Preferences_PC::DirectoryMadeIfMissing(const String& path)
{
    try {
        return Directory::Create(Directory::DirectoryGiven, path);
    } catch (const ExceptionResourceNotAvailable&) {
        DirectoryMadeIfMissing(PathForm::Parent(path))->CreateSubdirectory(PathForm::LastComponent(path));
        return Directory::Create(Directory::DirectoryGiven, path);
    }
}

}
