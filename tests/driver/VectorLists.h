#pragma once
// Vectors and strings of the driver turned into standard lists and back, so that tests compare
// whole rows at once, and the text of a range failure.

#include <initializer_list>
#include <string>
#include <vector>

#include "tests/utilities/FailureText.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace DeviceDriverTest {

template<class T>
Utilities::Vector<T> VectorOf(std::initializer_list<T> values)
{
    Utilities::Vector<T> vector(values.size());
    unsigned long i = 0;
    for (const T& value : values) {
        vector[i++] = value;
    }
    return vector;
}

template<class T>
Utilities::Vector<T> Filled(unsigned long size, T value)
{
    Utilities::Vector<T> vector(size);
    for (unsigned long i = 0; i < size; ++i) {
        vector[i] = value;
    }
    return vector;
}

template<class T>
std::vector<T> AsStd(const Utilities::Vector<T>& vector)
{
    std::vector<T> result;
    for (unsigned long i = 0; i < vector.Size(); ++i) {
        result.push_back(vector[i]);
    }
    return result;
}

inline std::vector<std::string> Texts(const std::vector<Utilities::String>& strings)
{
    std::vector<std::string> texts;
    for (const Utilities::String& string : strings) {
        texts.push_back(string.ToStdString());
    }
    return texts;
}

template<class Action>
std::string OutOfBoundText(Action action)
{
    return FailureText<Utilities::ExceptionOutOfBound>(action);
}

}
