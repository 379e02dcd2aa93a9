#pragma once
// Tells the person what to do and waits for the measurement key, counting down the seconds left.
// With waiting switched off (scripts), it neither speaks nor waits.

#include <ostream>
#include <string>

#include "tools/Hand.h"

namespace OrbelCli {

class KeyPrompt {
public:
    KeyPrompt(std::ostream& out, Hand& hand, bool wait, int seconds);
    // Throws when the key isn't pressed in time (exit status 4) or the instrument goes (2).
    void Await(const std::string& instruction) const;

private:
    void DropEarlierPress() const;
    void Countdown() const;

    std::ostream& out;
    Hand& hand;
    bool wait;
    int seconds;
};

}
