#include <iostream>

#include "tools/Application.h"

int main(int argc, char** argv)
{
    OrbelCli::Application application;
    return application.Run({argv + 1, argv + argc}, std::cout, std::cerr);
}
