// The language files: a key file and one language, split at the first NUL byte of the input,
// loaded by the service of a program in a private directory and asked both ways.
#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "utilities/Exception.h"
#include "utilities/FileLanguageService.h"

namespace {

std::filesystem::path application;

void Write(const std::string& name, const std::string& content)
{
    std::ofstream(application / "Languages" / name, std::ios::binary | std::ios::trunc) << content;
}

}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    application = std::filesystem::temp_directory_path() / ("orbel-fuzz-language-" + std::to_string(::getpid()));
    std::filesystem::create_directories(application / "Languages");
    // The service's settings come from a home of the fuzzer's own, which has none.
    ::setenv("HOME", application.c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", application.c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t split = input.find('\0');
    Write("Languages.key", input.substr(0, split));
    Write("fuzz.lang", split == std::string::npos ? std::string() : input.substr(split + 1));
    Utilities::FileLanguageService service(Utilities::String(application.c_str()));
    try {
        service.Load();
    } catch (const Utilities::Exception&) {
        // A damaged file is named in the failure of the load; the languages read stay usable.
    }
    const Utilities::String line(input.substr(0, input.find('\n')).c_str());
    try {
        service.SetLanguage("Fuzz");
        service.ReverseTranslate(service.Translate(line));
        service.GetValueString();
    } catch (const Utilities::Exception&) {
        // A language that didn't load is refused with a failure of the family; only crashes count.
    }
    return 0;
}
