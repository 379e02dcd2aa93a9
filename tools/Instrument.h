#pragma once
// The instrument as the program sees it: the exported functions of the module, each failure turned
// into a CliError carrying the result code and the module's "LastError" text.

#include <cstdint>
#include <optional>
#include <string>

#include "tools/Sample.h"

namespace OrbelCli {

class Instrument {
public:
    // Fails with a plain explanation when no instrument answers or another program holds it.
    static void RequireConnection();
    static bool IsConnected();
    // OB_KeyPressed as it answers: 0 pressed, 4 not pressed, 2 not connected.
    static int32_t KeyState();

    static std::string Info(const std::string& key);
    static std::string Option(const std::string& key);
    static void SetOption(const std::string& key, const std::string& value);

    static void Calibrate();
    static void Trigger();
    static void TriggerCountedScan(int32_t count);
    static int32_t SampleCount();

    static Spectrum ReadSpectrum(int32_t index);
    static Triple ReadTriStimulus(int32_t index);
    // Empty when the module has no paper white to measure densities against.
    static std::optional<Densities> ReadDensities(int32_t index);
    static void SetSubstrate(const Spectrum& spectrum);

    // Throws unless the code is OB_NoError.
    static void Check(int32_t code);

    // How to try the program without hardware, for the messages of a missing instrument.
    static const std::string TryWithoutHardware;
};

}
