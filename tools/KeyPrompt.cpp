#include "tools/KeyPrompt.h"

#include <chrono>
#include <thread>

#include "orbel.h"
#include "tools/CliError.h"
#include "tools/Instrument.h"

namespace OrbelCli {

namespace {

constexpr auto PollInterval = std::chrono::milliseconds(100);
constexpr int PollsPerSecond = 10;

}

KeyPrompt::KeyPrompt(std::ostream& out, Hand& hand, bool wait, int seconds)
    : out(out), hand(hand), wait(wait), seconds(seconds)
{
}

void KeyPrompt::Await(const std::string& instruction) const
{
    if (!wait) {
        return;
    }
    DropEarlierPress();
    out << "  > " << instruction << '\n';
    if (!hand.IsPerson()) {
        hand.PressKey();
    }
    Countdown();
}

// The key latches a press until it is asked for: one from before the prompt must not count.
void KeyPrompt::DropEarlierPress() const
{
    const int32_t state = Instrument::KeyState();
    if (state != OB_NoError && state != OB_KeyNotPressed) {
        Instrument::RequireConnection();
    }
}

void KeyPrompt::Countdown() const
{
    for (int left = seconds; left > 0; --left) {
        if (hand.IsPerson()) {
            out << "\r    press the measurement key: " << left << " s left " << std::flush;
        }
        for (int poll = 0; poll < PollsPerSecond; ++poll) {
            const int32_t state = Instrument::KeyState();
            if (state == OB_NoError) {
                if (hand.IsPerson()) {
                    out << "\r    key pressed." << std::string(30, ' ') << '\n';
                }
                return;
            }
            if (state != OB_KeyNotPressed) {
                out << '\n';
                Instrument::RequireConnection();
                throw CliError(state, OB_GetDeviceInfo("LastError"));
            }
            std::this_thread::sleep_for(PollInterval);
        }
    }
    out << '\n';
    throw CliError(OB_KeyNotPressed,
        "The measurement key wasn't pressed within " + std::to_string(seconds) +
            " s. Run the command again, or give --no-wait to measure at once.");
}

}
