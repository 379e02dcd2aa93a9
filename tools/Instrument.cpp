#include "tools/Instrument.h"

#include "orbel.h"
#include "tools/CliError.h"

namespace OrbelCli {

namespace {

const char* const FilterNames[] = {"cyan", "magenta", "yellow", "black"};

}

const std::string Instrument::TryWithoutHardware =
    "To try the program without hardware, plug in a virtual instrument: orbel-sim start "
    "(build/sim/orbel-sim start in the build tree).";

void Instrument::Check(int32_t code)
{
    if (code != OB_NoError) {
        throw CliError(code, OB_GetDeviceInfo("LastError"));
    }
}

void Instrument::RequireConnection()
{
    const int32_t code = OB_IsConnected();
    if (code == OB_NoError) {
        return;
    }
    if (code == OB_DeviceNotConnected) {
        throw CliError(code,
            "No instrument is connected. Plug the instrument into a USB port and try again.\n" + TryWithoutHardware);
    }
    const std::string reason = OB_GetDeviceInfo("Connection");
    if (reason.find("in use by another process") != std::string::npos) {
        throw CliError(code,
            reason +
                "\nAnother program is using the instrument. Close it, or wait until it has "
                "finished, and try again.");
    }
    throw CliError(code, reason + "\nThe module can't reach the instrument. Unplug it, plug it in again and retry.");
}

bool Instrument::IsConnected()
{
    return OB_IsConnected() == OB_NoError;
}

int32_t Instrument::KeyState()
{
    return OB_KeyPressed();
}

std::string Instrument::Info(const std::string& key)
{
    return OB_GetDeviceInfo(key.c_str());
}

std::string Instrument::Option(const std::string& key)
{
    return OB_GetOption(key.c_str());
}

void Instrument::SetOption(const std::string& key, const std::string& value)
{
    Check(OB_SetOption(key.c_str(), value.c_str()));
}

void Instrument::Calibrate()
{
    Check(OB_Calibrate());
}

void Instrument::Trigger()
{
    Check(OB_TriggerMeasurement());
}

void Instrument::TriggerCountedScan(int32_t count)
{
    Check(OB_TriggerCountedScan(count));
}

int32_t Instrument::SampleCount()
{
    const int32_t count = OB_GetNumberOfAvailableSamples();
    if (count < 0) {
        throw CliError(OB_UnknownError, OB_GetDeviceInfo("LastError"));
    }
    return count;
}

Spectrum Instrument::ReadSpectrum(int32_t index)
{
    Spectrum spectrum{};
    Check(OB_GetSpectrum(spectrum.data(), index));
    return spectrum;
}

Triple Instrument::ReadTriStimulus(int32_t index)
{
    Triple values{};
    Check(OB_GetTriStimulus(values.data(), index));
    return values;
}

std::optional<Densities> Instrument::ReadDensities(int32_t index)
{
    Densities densities;
    int32_t autoIndex = 4;
    const int32_t code = OB_GetDensities(densities.values.data(), &autoIndex, index);
    if (code == OB_NoSubstrateWhiteReference) {
        return std::nullopt;
    }
    Check(code);
    densities.autoFilter = autoIndex >= 0 && autoIndex < 4 ? FilterNames[autoIndex] : "none";
    return densities;
}

void Instrument::SetSubstrate(const Spectrum& spectrum)
{
    Check(OB_SetSubstrate(spectrum.data()));
}

}
