#include "tests/tools/FakeModule.h"

#include "orbel.h"

namespace OrbelCliTest {

bool FakeModule::connected;
int FakeModule::pollsBeforeKey;
int FakeModule::failingCode;
std::string FakeModule::failingFunction;
std::string FakeModule::lastError;
std::map<std::string, std::string> FakeModule::options;
std::vector<std::array<float, 36>> FakeModule::samples;
bool FakeModule::substrateSet;
std::vector<std::string> FakeModule::calls;

void FakeModule::Reset()
{
    connected = true;
    pollsBeforeKey = 0;
    failingCode = 0;
    failingFunction.clear();
    lastError = "no error";
    options = {{"MeasurementMode", "SingleReflectance"}, {"Colorimetric.Illumination", "D65"},
        {"Colorimetric.Observer", "TwoDegree"}, {"Colorimetric.WhiteBase", "Automatic"},
        {"ColorSpaceDescription.Type", "CIELab"}};
    std::array<float, 36> spectrum{};
    for (int i = 0; i < 36; ++i) {
        spectrum[i] = 0.1f + 0.0123f * i;
    }
    samples = {spectrum};
    substrateSet = false;
    calls.clear();
}

std::array<float, 3> FakeModule::TriStimulus(const std::string& colourSpace, int index)
{
    const float base = colourSpace == "CIEXYZ" ? 40.0f : colourSpace == "CIELab" ? 60.0f : 7.0f;
    return {base + index, base / 3.0f, -base / 7.0f};
}

}

using OrbelCliTest::FakeModule;

namespace {

int32_t Result(const std::string& function, const std::string& call)
{
    FakeModule::calls.push_back(call);
    if (!FakeModule::connected) {
        FakeModule::lastError = "device not connected";
        return OB_DeviceNotConnected;
    }
    if (FakeModule::failingFunction == function) {
        FakeModule::lastError = "device not calibrated Dark data not valid";
        return FakeModule::failingCode;
    }
    FakeModule::lastError = "no error";
    return OB_NoError;
}

bool ValidIndex(int32_t index)
{
    return index >= -1 && index < static_cast<int32_t>(FakeModule::samples.size());
}

}

extern "C" {

const char* OB_GetDeviceInfo(const char* key)
{
    static std::string answer;
    const std::string name = key;
    if (name == "LastError") {
        answer = FakeModule::lastError;
    } else if (name == "AvailableSamples") {
        answer = std::to_string(FakeModule::samples.size());
    } else if (name == "Connection") {
        answer = FakeModule::connected ? "yes" : "no";
    } else if (name == "SerialNumber") {
        answer = FakeModule::connected ? "1000001" : "device not connected!";
    } else if (name == "Version") {
        answer = "1.0.5";
    } else {
        answer = FakeModule::options.count(name) ? FakeModule::options[name] : "";
    }
    return answer.c_str();
}

int32_t OB_IsConnected(void)
{
    return FakeModule::connected ? OB_NoError : OB_DeviceNotConnected;
}

int32_t OB_KeyPressed(void)
{
    if (!FakeModule::connected) {
        return OB_DeviceNotConnected;
    }
    return FakeModule::pollsBeforeKey-- > 0 ? OB_KeyNotPressed : OB_NoError;
}

int32_t OB_GetNumberOfAvailableSamples(void)
{
    return static_cast<int32_t>(FakeModule::samples.size());
}

int32_t OB_Calibrate(void)
{
    return Result("Calibrate", "Calibrate");
}

int32_t OB_TriggerMeasurement(void)
{
    return Result("Trigger", "Trigger");
}

int32_t OB_TriggerCountedScan(int32_t count)
{
    return Result("Trigger", "TriggerCountedScan " + std::to_string(count));
}

int32_t OB_GetSpectrum(float* spectrum, int32_t index)
{
    if (!ValidIndex(index)) {
        return OB_NoDataAvailable;
    }
    const auto& sample = FakeModule::samples[index < 0 ? 0 : index];
    std::copy(sample.begin(), sample.end(), spectrum);
    return OB_NoError;
}

int32_t OB_GetTriStimulus(float* tristimulus, int32_t index)
{
    if (!ValidIndex(index)) {
        return OB_NoDataAvailable;
    }
    const auto values = FakeModule::TriStimulus(FakeModule::options["ColorSpaceDescription.Type"], index);
    std::copy(values.begin(), values.end(), tristimulus);
    return OB_NoError;
}

int32_t OB_GetDensity(float* density, int32_t)
{
    *density = 1.0f;
    return OB_NoError;
}

int32_t OB_GetDensities(float* densities, int32_t* autoIndex, int32_t index)
{
    if (!FakeModule::substrateSet && FakeModule::options["Colorimetric.WhiteBase"] != "Absolute") {
        FakeModule::lastError = "no substrate white reference set";
        return OB_NoSubstrateWhiteReference;
    }
    for (int filter = 0; filter < 4; ++filter) {
        densities[filter] = 0.1f * (filter + 1) + index;
    }
    *autoIndex = 3;
    return OB_NoError;
}

int32_t OB_SetOption(const char* key, const char* value)
{
    FakeModule::options[key] = value;
    return Result("SetOption", std::string("SetOption ") + key + "=" + value);
}

const char* OB_GetOption(const char* key)
{
    static std::string answer;
    answer = FakeModule::options.count(key) ? FakeModule::options[key] : "Undefined";
    return answer.c_str();
}

int32_t OB_SetSubstrate(const float*)
{
    FakeModule::substrateSet = true;
    return Result("SetSubstrate", "SetSubstrate");
}
}
