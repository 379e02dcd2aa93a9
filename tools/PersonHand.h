#pragma once
// A person at the instrument: the prompts tell them what to do, so nothing happens here.

#include "tools/Hand.h"

namespace OrbelCli {

class PersonHand : public Hand {
public:
    void Place(const std::string&) override { }
    void PrepareStrip(const std::string&) override { }
    void PressKey() override { }
    void Unplug() override { }
    bool IsPerson() const override { return true; }
};

}
