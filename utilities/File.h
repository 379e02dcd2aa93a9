#pragma once

#include <string>

#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace Utilities {

class Directory;

// A file of the file system, named by a path in the neutral form. Reading and writing go
// through a stream that exists only while the file is open.
class File {
public:
    // Fails with std::invalid_argument for an empty path.
    static SmartPointer<File> Create(const String& path);

    File(const File&) = delete;
    File& operator=(const File&) = delete;
    virtual ~File();

    // Opens for reading and appending, creating a missing file; a file that can't be written
    // opens for reading alone. Fails with ExceptionResourceNotAvailable when neither works.
    virtual void Open(bool binary) = 0;
    virtual void Close() = 0;

    // Writing fails with ExceptionResourceNotAvailable when the system refuses; without an open
    // stream nothing is written.
    virtual File& operator<<(const String& text) = 0;
    virtual void Write(const String& text) = 0;
    virtual void Write(const char* data, long count) = 0;

    // The next line without its line end, at most 9999 characters: the rest of a longer line is
    // passed over. The empty text without an open stream.
    virtual String ReadLine() = 0;
    // Fails with ExceptionNullpointer without an open stream.
    virtual bool IsAtEnd() const = 0;
    // The number of bytes read; 0 without an open stream.
    virtual long Read(char* data, long count) = 0;

    virtual String GetName() const = 0;
    virtual String GetPath() const = 0;
    virtual SmartPointer<Directory> GetGrandParent() const = 0;
    virtual std::string GetUrl() const = 0;
    virtual SmartPointer<Directory> GetDirectory() const = 0;

    // True when the system refused to delete the file.
    virtual bool Delete() = 0;
    // 0 for a file that can't be opened.
    virtual unsigned long GetSize() const = 0;
    // The local time of the last change as YYYYMMDDhhmmss; fourteen zeros when unknown.
    virtual String GetTimeStamp() const = 0;
    virtual bool CanAccess(bool forWriting) const = 0;
    // Compares the text behind the last dot of the name, without regard to case.
    virtual bool HasExtension(const std::string& extension) const = 0;

protected:
    File() = default;
};

}
