#include "utilities/platform/File_PC.h"

#include <cctype>
#include <ctime>
#include <limits>

#include "utilities/Directory.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/LanguageTranslator.h"
#include "utilities/PathForm.h"
#include "utilities/platform/SystemFiles.h"

namespace Utilities {

namespace {

constexpr std::streamsize longestLine = 9999;
constexpr char unknownTimeStamp[] = "00000000000000";

String FailureText(const char* english, const String& path)
{
    return Translated(english, "%FILENAME%", path);
}

std::string ToLower(std::string text)
{
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

}

File_PC::File_PC(const String& path) : path(path) { }

void File_PC::Open(bool binary)
{
    const std::ios_base::openmode mode = binary ? std::ios_base::binary : std::ios_base::openmode();
    stream = SmartPointer<std::fstream>(new std::fstream);
    stream->open(path.CString(), std::ios_base::in | std::ios_base::out | std::ios_base::app | mode);
    if (!stream->is_open()) {
        stream->clear();
        stream->open(path.CString(), std::ios_base::in | mode);
    }
    if (!stream->is_open()) {
        stream = SmartPointer<std::fstream>();
        throw ExceptionResourceNotAvailable(FailureText("File open failed:%FILENAME% ", path));
    }
}

void File_PC::Close()
{
    stream = SmartPointer<std::fstream>();
}

File& File_PC::operator<<(const String& text)
{
    Write(text);
    return *this;
}

// A longer line is cut rather than split, so that line N stays line N of the file.
String File_PC::ReadLine()
{
    if (stream.IsNull()) {
        return String();
    }
    std::string line(static_cast<std::string::size_type>(longestLine) + 1, '\0');
    stream->get(line.data(), longestLine + 1, '\n');
    line.resize(static_cast<std::string::size_type>(stream->gcount()));
    PassOverRestOfLine();
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return String(line);
}

void File_PC::PassOverRestOfLine()
{
    if (stream->fail() && !stream->bad()) {
        stream->clear(stream->rdstate() & ~std::ios_base::failbit);
    }
    stream->ignore(std::numeric_limits<std::streamsize>::max(), '\n');
}

bool File_PC::IsAtEnd() const
{
    return stream->peek() == std::fstream::traits_type::eof();
}

void File_PC::Write(const String& text)
{
    Write(text.CString(), static_cast<long>(text.Length()));
}

// Flushed at once, so that a refusal shows here and not at some later write. The stream stays
// good for reading after a refusal.
void File_PC::Write(const char* data, long count)
{
    if (stream.IsNull() || count <= 0) {
        return;
    }
    stream->clear();
    stream->write(data, count);
    stream->flush();
    if (stream->fail()) {
        stream->clear();
        throw ExceptionResourceNotAvailable(
            FailureText("File write failed: %FILENAME%, probably write protected", path));
    }
}

long File_PC::Read(char* data, long count)
{
    if (stream.IsNull() || count <= 0) {
        return 0;
    }
    stream->read(data, count);
    return static_cast<long>(stream->gcount());
}

String File_PC::GetName() const
{
    return PathForm::LastComponent(path);
}

String File_PC::GetPath() const
{
    return path;
}

SmartPointer<Directory> File_PC::GetGrandParent() const
{
    return Directory::Create(Directory::DirectoryGiven, PathForm::Parent(PathForm::Parent(path)));
}

std::string File_PC::GetUrl() const
{
    return "file://" + path.ToStdString();
}

SmartPointer<Directory> File_PC::GetDirectory() const
{
    return Directory::Create(Directory::DirectoryGiven, PathForm::Parent(path));
}

bool File_PC::Delete()
{
    return !SystemFiles::Delete(path);
}

unsigned long File_PC::GetSize() const
{
    const auto status = SystemFiles::StatusOfReadable(path);
    return status ? static_cast<unsigned long>(status->size) : 0;
}

String File_PC::GetTimeStamp() const
{
    const auto status = SystemFiles::StatusOfReadable(path);
    std::tm local{};
    if (!status || ::localtime_r(&status->modified, &local) == nullptr) {
        return String(unknownTimeStamp);
    }
    char text[sizeof unknownTimeStamp];
    if (std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &local) != sizeof text - 1) {
        return String(unknownTimeStamp);
    }
    return String(text);
}

bool File_PC::CanAccess(bool forWriting) const
{
    return SystemFiles::CanOpen(path, forWriting);
}

bool File_PC::HasExtension(const std::string& extension) const
{
    const String name = GetName();
    const long dot = name.FindReverse('.');
    if (dot < 0) {
        return false;
    }
    const std::string behindDot = name.SubString(static_cast<unsigned long>(dot) + 1).ToStdString();
    return ToLower(behindDot) == ToLower(extension);
}

}
