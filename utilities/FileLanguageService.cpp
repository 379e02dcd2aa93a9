#include "utilities/FileLanguageService.h"

#include <exception>
#include <vector>

#include "InstalledPaths.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/MapIterator.h"
#include "utilities/Preferences.h"
#include "utilities/ResolveAs.h"

namespace Utilities {

namespace {

ComponentCreatorSingleton<FileLanguageService> languageServiceCreator(
    "LanguageService", "$Revision: 1.33 $", "Utilities");

using Guard = std::lock_guard<std::recursive_mutex>;

constexpr char settingsSection[] = "LanguageService";
constexpr char defaultLanguage[] = "English";
constexpr char languagesName[] = "Languages";
constexpr char usageLogName[] = "LanguageService.log";
constexpr char initialisationFailure[] = "Could not initialize LanguageService!\n\n";

bool IsOn(const String& setting)
{
    return setting.ToLower() == String("true");
}

// "german.lang" is the language "German".
String LanguageNameOf(const String& fileName)
{
    const String name = fileName.Token(0, '.');
    return name.SubString(0, 1).ToUpper() + name.SubString(1);
}

// The two characters backslash and n stand for a line feed.
String WithLineFeeds(String line)
{
    line.Replace(String("\\n"), String("\n"));
    return line;
}

String WithoutMarks(const String& text)
{
    return text.Length() <= 2 ? String() : text.SubString(1, text.Length() - 2);
}

// The languages an installation of the module brings, in the data directory the build names.
std::vector<SmartPointer<Directory>> InstalledLanguages()
{
    const String installed(ORBEL_INSTALLED_DATA_DIR);
    if (!Directory::Exists(installed)) {
        return {};
    }
    return Directory::Create(Directory::DirectoryGiven, installed)->GetSubdirectories(languagesName);
}

String VersionLine(const char* role, const File& file, const String& fileVersion)
{
    return String(role) + String(" = ") + file.GetName() + String(" : Version = \"") + fileVersion + String("\"\n");
}

}

FileLanguageService::FileLanguageService() : FileLanguageService(Directory::DirectoryApplication, String()) { }

FileLanguageService::FileLanguageService(const String& applicationDirectory)
    : FileLanguageService(Directory::DirectoryGiven, applicationDirectory)
{
}

// No file is touched before the first use.
FileLanguageService::FileLanguageService(long directoryKind, const String& directoryPath)
    : language(defaultLanguage), mark(false), loaded(false), lineBreak("\n"), directoryKind(directoryKind),
      directoryPath(directoryPath)
{
    ReadSettings();
}

// Destructors must stay quiet: a log that can't be written is lost.
FileLanguageService::~FileLanguageService()
{
    if (usage.IsNull()) {
        return;
    }
    try {
        WriteUsageLog();
    } catch (const Exception&) {
    } catch (const std::exception&) {
    }
}

void FileLanguageService::ReadSettings()
{
    const SmartPointer<Preferences> preferences = ResolveAs<Preferences>("Preferences");
    if (preferences.IsNull()) {
        return;
    }
    if (IsOn(preferences->Get(settingsSection, "Log", "false"))) {
        usage = SmartPointer<Map<String, unsigned long>>(new Map<String, unsigned long>);
    }
    mark = IsOn(preferences->Get(settingsSection, "Mark", "false"));
    language = preferences->Get(settingsSection, "Language", defaultLanguage);
}

bool FileLanguageService::PrepareForUnload()
{
    return true;
}

Diagnostics::String FileLanguageService::GetValueString() const
{
    const Guard guard(lock);
    return Diagnostics::String("Version: ") + version.ToDiagnostics() + Diagnostics::String(", ") +
        language.ToDiagnostics();
}

String FileLanguageService::Translate(const String& key)
{
    const Guard guard(lock);
    CountRequest(key);
    if (!loaded) {
        Load();
    }
    const String* translation = TranslationOf(key);
    String text = translation != nullptr ? *translation : key;
    text.Replace(String("<br>"), lineBreak);
    if (!mark) {
        return text;
    }
    return translation != nullptr ? String("[") + text + String("]") : String("*") + text + String("*");
}

void FileLanguageService::SetLanguage(const String& chosen)
{
    const Guard guard(lock);
    if (!loaded) {
        Load();
    }
    if (!translations.Find(chosen).IsValid()) {
        throw ExceptionOutOfBound("Language not available");
    }
    language = chosen;
}

String FileLanguageService::GetLanguage() const
{
    const Guard guard(lock);
    return language;
}

Vector<String> FileLanguageService::GetLanguages() const
{
    const Guard guard(lock);
    Vector<String> names(translations.Size());
    unsigned long index = 0;
    for (MapIterator<String, const Map<String, String>> table = translations.Begin(); table.IsValid(); ++table) {
        names[index++] = table.Key();
    }
    return names;
}

// The first key in table order whose translation is the text, without its marks when the mark
// is on.
String FileLanguageService::ReverseTranslate(const String& text)
{
    const Guard guard(lock);
    if (!loaded) {
        Load();
    }
    const String unmarked = mark ? WithoutMarks(text) : text;
    const Map<String, String>* table = CurrentTable();
    if (table == nullptr) {
        return unmarked;
    }
    for (MapIterator<String, const String> entry = table->Begin(); entry.IsValid(); ++entry) {
        if (entry.Value() == unmarked) {
            return entry.Key();
        }
    }
    return unmarked;
}

void FileLanguageService::SetMark(bool on)
{
    const Guard guard(lock);
    mark = on;
}

bool FileLanguageService::GetMark() const
{
    const Guard guard(lock);
    return mark;
}

bool FileLanguageService::IsLoaded() const
{
    const Guard guard(lock);
    return loaded;
}

// A missing resource is described in the error text; any other failure leaves nothing but the
// first line of it.
void FileLanguageService::Load()
{
    const Guard guard(lock);
    if (loaded) {
        return;
    }
    loaded = true;
    String errorText;
    bool complete = false;
    try {
        complete = ReadLanguages(errorText);
    } catch (const ExceptionResourceNotAvailable& failure) {
        errorText += String(initialisationFailure) + *failure.Text() + String("\n");
    } catch (const Exception&) {
        errorText = initialisationFailure;
    } catch (const std::exception&) {
        errorText = initialisationFailure;
    }
    if (!complete) {
        throw ExceptionResourceNotAvailable(errorText);
    }
}

SmartPointer<Directory> FileLanguageService::ApplicationDirectory() const
{
    return Directory::Create(directoryKind, directoryPath);
}

bool FileLanguageService::ReadLanguages(String& errorText)
{
    const SmartPointer<Directory> application = ApplicationDirectory();
    // Languages beside the host program come first; without them, those of the installation.
    std::vector<SmartPointer<Directory>> found = application->GetSubdirectories(languagesName);
    if (found.empty() && directoryKind == Directory::DirectoryApplication) {
        found = InstalledLanguages();
    }
    if (found.empty()) {
        errorText +=
            String(initialisationFailure) + String("Directory ") + application->GetPath() + String(" missing!\n\n");
        return false;
    }
    const SmartPointer<Directory>& languages = found.front();
    const std::vector<SmartPointer<File>> keyFiles = languages->GetFiles(languagesName, "key");
    if (keyFiles.empty()) {
        throw ExceptionResourceNotAvailable("Keyfile missing");
    }
    bool complete = true;
    for (const SmartPointer<File>& languageFile : languages->GetFiles("*", "lang")) {
        complete = ReadLanguage(*keyFiles.front(), *languageFile, errorText) && complete;
    }
    return complete;
}

// A language whose first line differs from the key file's is passed over.
bool FileLanguageService::ReadLanguage(File& keyFile, File& languageFile, String& errorText)
{
    keyFile.Open(false);
    languageFile.Open(false);
    version = keyFile.ReadLine();
    const String languageVersion = languageFile.ReadLine();
    if (languageVersion != version) {
        errorText += String("Version conflict in Languagefiles!\n\n") + VersionLine("Keyfile", keyFile, version) +
            VersionLine("Languagefile", languageFile, languageVersion) + String("\n") +
            String("Translations for this language are not taken!\n\n");
    } else {
        ReadTranslations(keyFile, languageFile, translations[LanguageNameOf(languageFile.GetName())]);
    }
    keyFile.Close();
    languageFile.Close();
    return languageVersion == version;
}

// Blank key lines leave a gap in the table, not in the numbering of the lines.
void FileLanguageService::ReadTranslations(File& keyFile, File& languageFile, Map<String, String>& table)
{
    while (!keyFile.IsAtEnd() && !languageFile.IsAtEnd()) {
        const String key = WithLineFeeds(keyFile.ReadLine());
        const String translation = WithLineFeeds(languageFile.ReadLine());
        if (!key.IsEmpty()) {
            table[key] = translation;
        }
    }
}

void FileLanguageService::CountRequest(const String& key)
{
    if (!usage.IsNull()) {
        ++(*usage)[key];
    }
}

const Map<String, String>* FileLanguageService::CurrentTable() const
{
    const MapIterator<String, const Map<String, String>> table = translations.Find(language);
    return table.IsValid() ? &table.Value() : nullptr;
}

const String* FileLanguageService::TranslationOf(const String& key) const
{
    const Map<String, String>* table = CurrentTable();
    if (table == nullptr) {
        return nullptr;
    }
    const MapIterator<String, const String> entry = table->Find(key);
    return entry.IsValid() ? &entry.Value() : nullptr;
}

// One line per key: the key, a tab and the number of requests.
void FileLanguageService::WriteUsageLog() const
{
    const SmartPointer<File> log = File::Create(ApplicationDirectory()->GetPath() + String('/') + String(usageLogName));
    log->Delete();
    log->Open(false);
    const Map<String, unsigned long>& counts = *usage;
    for (MapIterator<String, const unsigned long> entry = counts.Begin(); entry.IsValid(); ++entry) {
        *log << entry.Key() + String('\t') + String(entry.Value()) + String('\n');
    }
    log->Close();
}

}
