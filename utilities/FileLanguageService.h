#pragma once

#include <mutex>

#include "diagnostics/String.h"
#include "utilities/Directory.h"
#include "utilities/File.h"
#include "utilities/LanguageService.h"
#include "utilities/Map.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Utilities {

// The LanguageService of this module. Its tables come from the directory "Languages" beside the
// host program: a key file "Languages.key" and a ".lang" file for each language, whose line N
// translates line N of the key file. The settings "Log", "Mark" and "Language" of the section
// "LanguageService" are read when the service is made, the files at its first use. With "Log"
// on, the requests of each key are counted and written to "LanguageService.log" beside the
// program when the service goes.
class FileLanguageService : public LanguageService {
public:
    FileLanguageService();
    // The same service for a program in applicationDirectory.
    explicit FileLanguageService(const String& applicationDirectory);
    ~FileLanguageService() override;

    bool PrepareForUnload() override;
    // "Version: ", the version line of the key file, ", " and the current language.
    virtual Diagnostics::String GetValueString() const;

    // Loads at the first call, which passes on the failure of the load.
    String Translate(const String& key) override;
    void SetLanguage(const String& language) override;
    String GetLanguage() const override;
    Vector<String> GetLanguages() const override;
    String ReverseTranslate(const String& text) override;
    void SetMark(bool mark) override;
    bool GetMark() const override;
    bool IsLoaded() const override;
    // Runs once, whatever comes of it. Every language that could be read stays usable; what
    // couldn't is named in one ExceptionResourceNotAvailable at the end.
    void Load() override;

private:
    FileLanguageService(long directoryKind, const String& directoryPath);

    void ReadSettings();
    SmartPointer<Directory> ApplicationDirectory() const;
    // Gives false when a problem was found, and adds its description to errorText.
    bool ReadLanguages(String& errorText);
    bool ReadLanguage(File& keyFile, File& languageFile, String& errorText);
    void ReadTranslations(File& keyFile, File& languageFile, Map<String, String>& table);
    void CountRequest(const String& key);
    // Null when the current language has no table.
    const Map<String, String>* CurrentTable() const;
    // Null when the current language has no translation of key.
    const String* TranslationOf(const String& key) const;
    void WriteUsageLog() const;

    Map<String, Map<String, String>> translations;
    String language;
    String version;
    bool mark;
    bool loaded;
    SmartPointer<Map<String, unsigned long>> usage;
    String lineBreak;
    const long directoryKind;
    const String directoryPath;
    // Messages are translated on any thread; a load that fails translates its own messages on
    // the same thread.
    mutable std::recursive_mutex lock;
};

}
