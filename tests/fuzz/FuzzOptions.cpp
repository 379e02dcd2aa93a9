// Option keys and values as a host passes them, through the exported functions, with no
// instrument attached. The input is a key, a NUL byte and a value; its length also picks the
// measurement mode, so that each mode's options are reached.
#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "include/orbel.h"

namespace {

const char* const modes[] = {"SingleReflectance", "ScanningReflectance", "SingleEmission", "SingleAmbientLight"};

}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // No instrument, real or virtual, and locks of the fuzzer's own.
    const std::filesystem::path home =
        std::filesystem::temp_directory_path() / ("orbel-fuzz-options-" + std::to_string(::getpid()));
    std::filesystem::create_directories(home);
    ::setenv("ORBEL_SIM_DIR", home.c_str(), 1);
    ::setenv("ORBEL_LOCK_DIR", home.c_str(), 1);
    ::setenv("ORBEL_VIRTUAL", "off", 1);
    ::setenv("ORBEL_USB_ID", "fffe:fffe", 1);
    ::setenv("HOME", home.c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t split = input.find('\0');
    const std::string key = input.substr(0, split);
    const std::string value = split == std::string::npos ? std::string() : input.substr(split + 1);
    OB_SetOption("MeasurementMode", modes[size % 4]);
    OB_SetOption(key.c_str(), value.c_str());
    OB_GetOption(key.c_str());
    OB_GetDeviceInfo(key.c_str());
    OB_GetDeviceInfo("LastError");
    return 0;
}
