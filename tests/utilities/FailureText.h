#pragma once

#include <string>

#include "utilities/String.h"

// The text of the failure of class Failure that action raises; a failure of another class
// passes through and fails the test.
template<class Failure, class Action>
std::string FailureText(Action action)
{
    try {
        action();
    } catch (const Failure& failure) {
        return failure.Text()->CString();
    }
    return "no failure";
}
