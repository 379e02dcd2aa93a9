#pragma once
// Whatever moves the instrument: a person who follows the prompts, or, for the demo, a virtual
// instrument that the program itself drives.

#include <string>

namespace OrbelCli {

class Hand {
public:
    virtual ~Hand() = default;
    // target: what a virtual instrument puts under its aperture ("tile", "sample:tcs05", ...).
    virtual void Place(const std::string& target) = 0;
    // spec: the strip that the next scan is drawn across ("builtin:colour24").
    virtual void PrepareStrip(const std::string& spec) = 0;
    virtual void PressKey() = 0;
    virtual void Unplug() = 0;
    // True if a person acts, so that prompts must wait for them.
    virtual bool IsPerson() const = 0;
};

}
