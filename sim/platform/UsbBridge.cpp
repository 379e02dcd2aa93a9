#include "sim/platform/UsbBridge.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>

#include <unistd.h>

#ifndef ORBEL_SIM_LIBEXEC_DIR
#define ORBEL_SIM_LIBEXEC_DIR "/usr/libexec/orbel"
#endif

namespace OrbelSim {

namespace {

const char* const helperName = "orbel-sim-usb";

std::string HelperPath()
{
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path beside = self.parent_path() / helperName;
    if (!error && std::filesystem::exists(beside, error)) {
        return beside.string();
    }
    return (std::filesystem::path(ORBEL_SIM_LIBEXEC_DIR) / helperName).string();
}

}

std::string UsbBridge::Exec(
    const std::string& directory, std::uint32_t serial, bool verbose, const std::vector<std::string>& command)
{
    const std::string helper = HelperPath();
    std::vector<std::string> words = {helper, "--directory", directory, "--serial", std::to_string(serial)};
    if (verbose) {
        words.emplace_back("--verbose");
    }
    words.emplace_back("--");
    words.insert(words.end(), command.begin(), command.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    ::execv(helper.c_str(), argv.data());
    return helper + ": " + std::strerror(errno);
}

} // namespace OrbelSim
