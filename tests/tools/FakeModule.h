#pragma once
// A stand-in for the module under the program's classes: the fourteen exported functions over a
// state that each test sets, and a log of the calls that change the instrument.

#include <array>
#include <map>
#include <string>
#include <vector>

namespace OrbelCliTest {

class FakeModule {
public:
    // Back to an open instrument with one measured sample and no failures.
    static void Reset();

    static bool connected;
    // Calls of OB_KeyPressed still to answer "not pressed" before the key is down.
    static int pollsBeforeKey;
    static int failingCode;
    static std::string failingFunction;
    static std::string lastError;
    static std::map<std::string, std::string> options;
    static std::vector<std::array<float, 36>> samples;
    static bool substrateSet;
    static std::vector<std::string> calls;

    // The fake's tristimulus values: they differ by colour space and by sample.
    static std::array<float, 3> TriStimulus(const std::string& colourSpace, int index);
};

}
