// Takes a named Mutex in a process of its own for the tests of the cross-process lock.
// Arguments: the lock name and the time-out in ms. Prints "locked" or "busy"; a held lock is let
// go at the next line or the end of the standard input, then "released" is printed.
#include <iostream>
#include <string>

#include "utilities/Mutex.h"

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::cerr << "usage: orbel_mutex_holder NAME TIMEOUT_MS\n";
        return 2;
    }
    Utilities::Mutex mutex{Utilities::String(arguments[1])};
    if (!mutex.Lock(std::stoul(arguments[2]))) {
        std::cout << "busy" << std::endl;
        return 1;
    }
    std::cout << "locked" << std::endl;
    std::string line;
    std::getline(std::cin, line);
    mutex.Unlock();
    std::cout << "released" << std::endl;
    return 0;
}
