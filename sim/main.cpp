#include <iostream>
#include <string>
#include <vector>

#include "sim/CommandLine.h"

int main(int argc, char** argv)
{
    return OrbelSim::CommandLine::Run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
}
