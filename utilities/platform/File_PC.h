#pragma once

#include <fstream>
#include <string>

#include "utilities/File.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace Utilities {

// A File of this system, in the neutral form of its path.
class File_PC : public File {
public:
    explicit File_PC(const String& path);

    void Open(bool binary) override;
    void Close() override;
    File& operator<<(const String& text) override;
    String ReadLine() override;
    bool IsAtEnd() const override;
    void Write(const String& text) override;
    void Write(const char* data, long count) override;
    long Read(char* data, long count) override;
    String GetName() const override;
    String GetPath() const override;
    SmartPointer<Directory> GetGrandParent() const override;
    std::string GetUrl() const override;
    SmartPointer<Directory> GetDirectory() const override;
    bool Delete() override;
    unsigned long GetSize() const override;
    String GetTimeStamp() const override;
    bool CanAccess(bool forWriting) const override;
    bool HasExtension(const std::string& extension) const override;

private:
    void PassOverRestOfLine();

    String path;
    SmartPointer<std::fstream> stream;
};

}
