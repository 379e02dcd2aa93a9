#pragma once

#include <cstdint>

#include "utilities/Exception.h"
#include "utilities/String.h"

// The failure that the exported functions report: a result code of orbel.h and the text that
// "LastError" shows behind the code's own text. Any other failure of the system becomes one of
// these at the module's edge, its code chosen by what its text holds.
class OrbelApiError : public Utilities::Exception {
public:
    // The message is the code's own text.
    explicit OrbelApiError(int32_t code);
    OrbelApiError(int32_t code, const Utilities::String& message);
    // Keeps the message of failure; the code is failure's own if it is an OrbelApiError,
    // else the one that the message selects.
    explicit OrbelApiError(const Utilities::Exception& failure);
    OrbelApiError(const OrbelApiError& other);
    OrbelApiError& operator=(const OrbelApiError& other);
    ~OrbelApiError() override;

    int32_t Code() const { return code; }

    // The text of a result code. Code 4 and codes outside the table have none of their own and
    // read as unkown code "N".
    static Utilities::String TextOf(int32_t code);

private:
    static int32_t CodeOf(const Utilities::Exception& failure);

    int32_t code;
};
