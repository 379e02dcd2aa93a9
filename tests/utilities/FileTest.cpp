#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <string>

#include "tests/TemporaryDirectory.h"
#include "tests/utilities/FailureText.h"
#include "utilities/Directory.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/File.h"

using Utilities::Directory;
using Utilities::ExceptionNullpointer;
using Utilities::ExceptionResourceNotAvailable;
using Utilities::File;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

constexpr uid_t nobody = 65534;

SmartPointer<File> OpenedFile(const std::string& path, bool binary = false)
{
    SmartPointer<File> file = File::Create(path.c_str());
    file->Open(binary);
    return file;
}

std::string ReadAllLines(File& file)
{
    std::string lines;
    while (!file.IsAtEnd()) {
        lines += file.ReadLine().ToStdString() + "|";
    }
    return lines;
}

std::string LocalTimeStamp(std::time_t time)
{
    std::tm local{};
    localtime_r(&time, &local);
    char text[15];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &local);
    return text;
}

// Run in a child that, when it is root, gives up its privileges first, since root may write
// any file. It names each failed expectation and ends with their number.
void CheckReadOnlyFileAsUser(const std::string& path)
{
    if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0)) {
        _exit(100);
    }
    int failures = 0;
    const auto expect = [&failures](bool holds, const char* what) {
        if (!holds) {
            std::fprintf(stderr, "failed: %s\n", what);
            ++failures;
        }
    };
    const SmartPointer<File> file = File::Create(path.c_str());
    expect(file->CanAccess(false), "readable");
    expect(!file->CanAccess(true), "not writable");
    file->Open(false);
    expect(file->ReadLine() == String("first"), "first line");
    const std::string refused = "File write failed: " + path + ", probably write protected";
    expect(FailureText<ExceptionResourceNotAvailable>([&] { *file << String("more"); }) == refused, "<< refused");
    expect(FailureText<ExceptionResourceNotAvailable>([&] { file->Write("x", 1); }) == refused, "Write refused");
    expect(file->ReadLine() == String("second"), "second line");
    _exit(failures);
}

}

TEST(FileTest, PathsTravelWithSlashes)
{
    EXPECT_STREQ("C:/data/a.txt", File::Create("C:\\data\\a.txt")->GetPath().CString());

    const SmartPointer<File> file = File::Create("a/b/c.txt");
    EXPECT_STREQ("c.txt", file->GetName().CString());
    EXPECT_EQ("file:///tmp/x.lang", File::Create("/tmp/x.lang")->GetUrl());

    // 0x95 leads a double-byte character whose second byte is a backslash.
    const std::string doubleByte = "dir\\\x95\\name.txt";
    const String neutral = File::Create(doubleByte.c_str())->GetPath();
    EXPECT_EQ("dir/\x95\\name.txt", neutral.ToStdString());
    EXPECT_EQ(neutral, File::Create(neutral)->GetPath());
    EXPECT_EQ("\x95\\name.txt", File::Create(neutral)->GetName().ToStdString());

    try {
        File::Create("");
        ADD_FAILURE() << "an empty path made a file";
    } catch (const std::invalid_argument& failure) {
        EXPECT_STREQ("the filename specified was either 0 or empty!!", failure.what());
    }
}

TEST(FileTest, ExtensionsCompareWithoutCase)
{
    EXPECT_TRUE(File::Create("plugins/Screen.SO")->HasExtension("so"));
    EXPECT_TRUE(File::Create("Languages/german.lang")->HasExtension("LANG"));
    EXPECT_TRUE(File::Create("a.tar.gz")->HasExtension("gz"));
    EXPECT_FALSE(File::Create("a.tar.gz")->HasExtension("tar"));
    EXPECT_FALSE(File::Create("Makefile")->HasExtension("Makefile"));
    EXPECT_FALSE(File::Create("ver.d/Makefile")->HasExtension("d/Makefile"));
}

TEST(FileTest, WritesAppendAndReadBackLineByLine)
{
    TemporaryDirectory directory;
    const std::string path = directory / "text.txt";
    {
        const SmartPointer<File> file = OpenedFile(path);
        *file << String("first") << String("\n");
        file->Write(String("second\n"));
        file->Write("third, no line end", 18);
    }
    EXPECT_EQ("first\nsecond\nthird, no line end", directory.Read("text.txt"));

    const SmartPointer<File> file = OpenedFile(path);
    EXPECT_EQ("first|second|third, no line end|", ReadAllLines(*file));
    EXPECT_TRUE(file->IsAtEnd());
    EXPECT_STREQ("", file->ReadLine().CString());

    file->Write(String("\nfourth\n"));
    file->Close();
    EXPECT_EQ("first\nsecond\nthird, no line end\nfourth\n", directory.Read("text.txt"));
}

TEST(FileTest, LinesEndAtALineFeedWithOrWithoutReturnAndAreCutAfter9999Characters)
{
    TemporaryDirectory directory;
    directory.Write("windows.txt", "one\r\n\r\nthree\r\n");
    directory.Write("empty.txt", "");
    directory.Write("blank.txt", "\n\n");

    EXPECT_EQ("one||three|", ReadAllLines(*OpenedFile(directory / "windows.txt")));
    EXPECT_EQ("", ReadAllLines(*OpenedFile(directory / "empty.txt")));
    EXPECT_EQ("||", ReadAllLines(*OpenedFile(directory / "blank.txt")));

    // An overlong line is cut, and the next line stays whole.
    directory.Write("long.txt", std::string(20000, 'x') + "\nnext\n" + std::string(9999, 'y') + "\nlast");

    const SmartPointer<File> file = OpenedFile(directory / "long.txt");
    EXPECT_EQ(std::string(9999, 'x'), file->ReadLine().ToStdString());
    EXPECT_STREQ("next", file->ReadLine().CString());
    EXPECT_EQ(std::string(9999, 'y'), file->ReadLine().ToStdString());
    EXPECT_STREQ("last", file->ReadLine().CString());
    EXPECT_TRUE(file->IsAtEnd());
}

TEST(FileTest, BinaryContentReadsToItsEnd)
{
    TemporaryDirectory directory;
    std::string bytes;
    for (int i = 0; i < 70000; ++i) {
        bytes += static_cast<char>((i * 37) % 256);
    }
    directory.Write("binary.bin", bytes);

    const SmartPointer<File> asText = OpenedFile(directory / "binary.bin");
    unsigned long lines = 0;
    while (!asText->IsAtEnd()) {
        asText->ReadLine();
        ++lines;
    }
    EXPECT_EQ(274UL, lines);

    const SmartPointer<File> asBinary = OpenedFile(directory / "binary.bin", true);
    std::string back(bytes.size() + 10, '\0');
    EXPECT_EQ(static_cast<long>(bytes.size()), asBinary->Read(back.data(), static_cast<long>(back.size())));
    back.resize(bytes.size());
    EXPECT_EQ(bytes, back);
    EXPECT_EQ(0L, asBinary->Read(back.data(), 10));

    asBinary->Write("\0\1\2", 3);
    EXPECT_EQ(bytes.size() + 3, asBinary->GetSize());
}

TEST(FileTest, WithoutAStreamNothingIsReadOrWritten)
{
    TemporaryDirectory directory;
    const SmartPointer<File> file = File::Create((directory / "never.txt").c_str());

    EXPECT_STREQ("", file->ReadLine().CString());
    char data[4] = {};
    EXPECT_EQ(0L, file->Read(data, 4));
    file->Write(String("lost"));
    *file << String("lost");
    file->Close();
    EXPECT_EQ("Failed to access to nullpointer.", FailureText<ExceptionNullpointer>([&] { file->IsAtEnd(); }));
    EXPECT_FALSE(file->CanAccess(false));
}

TEST(FileTest, OpenFailsWhereNothingCanBeOpened)
{
    TemporaryDirectory directory;
    const std::string path = directory / "missing/file.txt";
    const SmartPointer<File> file = File::Create(path.c_str());

    EXPECT_EQ("File open failed:" + path + " ", FailureText<ExceptionResourceNotAvailable>([&] { file->Open(false); }));
    EXPECT_EQ("Failed to access to nullpointer.", FailureText<ExceptionNullpointer>([&] { file->IsAtEnd(); }));

    // A directory opens for reading only, and reads as an empty file.
    const SmartPointer<File> folder = OpenedFile(directory.Path());
    EXPECT_EQ("", ReadAllLines(*folder));
}

TEST(FileTest, AReadOnlyFileOpensForReadingAndRefusesWrites)
{
    TemporaryDirectory directory;
    directory.Write("locked.txt", "first\nsecond\n");
    ASSERT_EQ(0, chmod(directory.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod((directory / "locked.txt").c_str(), 0444));

    EXPECT_EXIT(CheckReadOnlyFileAsUser(directory / "locked.txt"), testing::ExitedWithCode(0), "");
    EXPECT_EQ("first\nsecond\n", directory.Read("locked.txt"));
}

TEST(FileTest, SizeTimeAccessAndDeletion)
{
    TemporaryDirectory directory;
    directory.Write("data.txt", "12345");
    const std::string path = directory / "data.txt";
    const std::time_t changed = 1700000000;
    const utimbuf times{changed, changed};
    ASSERT_EQ(0, utime(path.c_str(), &times));

    const SmartPointer<File> file = File::Create(path.c_str());
    EXPECT_EQ(5UL, file->GetSize());
    EXPECT_EQ(LocalTimeStamp(changed), file->GetTimeStamp().ToStdString());
    EXPECT_TRUE(file->CanAccess(false));
    EXPECT_TRUE(file->CanAccess(true));

    EXPECT_FALSE(file->Delete());
    EXPECT_TRUE(file->Delete());
    EXPECT_EQ(0UL, file->GetSize());
    EXPECT_STREQ("00000000000000", file->GetTimeStamp().CString());
    EXPECT_FALSE(file->CanAccess(false));
    EXPECT_FALSE(file->CanAccess(true));
}

TEST(FileTest, DirectoriesAboveTheFile)
{
    TemporaryDirectory directory;
    std::filesystem::create_directories(directory / "a/b");
    const SmartPointer<File> file = File::Create((directory / "a/b/c.txt").c_str());

    EXPECT_EQ(directory / "a/b", file->GetDirectory()->GetPath().ToStdString());
    EXPECT_EQ(directory / "a", file->GetGrandParent()->GetPath().ToStdString());
    EXPECT_STREQ(".", File::Create("alone.txt")->GetDirectory()->GetPath().CString());

    const std::string missing = directory / "gone";
    EXPECT_EQ("Error: Directory " + missing + " does not exist", FailureText<ExceptionResourceNotAvailable>([&] {
        File::Create((missing + "/c.txt").c_str())->GetDirectory();
    }));
}
