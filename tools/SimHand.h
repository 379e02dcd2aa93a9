#pragma once
// Drives a virtual instrument through its control program (orbel-sim place, press, strip, unplug).

#include <string>
#include <vector>

#include "tools/Hand.h"

namespace OrbelCli {

class SimHand : public Hand {
public:
    explicit SimHand(std::string program);
    void Place(const std::string& target) override;
    void PrepareStrip(const std::string& spec) override;
    void PressKey() override;
    void Unplug() override;
    bool IsPerson() const override { return false; }

private:
    void Run(const std::vector<std::string>& arguments) const;

    std::string program;
};

}
