#pragma once

#include <cstdint>
#include <mutex>

#include "utilities/Map.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace CMetry {

// The valid values of every condition key and the channel names of every colour space: one table
// for the process, filled at its first use. It is read far more often than entered, but an
// unknown key is entered on a query, so every access goes through its mutex.
class ConditionVocabulary {
public:
    // The list of a key, without the end mark "Undefined". A key outside the table is entered with
    // an empty list.
    static Utilities::Vector<Utilities::String> GetValidValues(const Utilities::String& key);

    // The name of a channel of an absolute or a delta vector in a colour space; the empty text for
    // a colour space without names or an index beyond its channels.
    static Utilities::String GetChannelName(const Utilities::String& colorSpace, bool deltaVector, uint16_t index);

    // Whether a text is a keyword of a condition that is held as text. The end mark "Undefined"
    // is accepted as a keyword.
    static bool IsColorSpace(const Utilities::String& text);
    static bool IsAbsoluteOrDeltaVector(const Utilities::String& text);
    static bool IsDeltaEFormula(const Utilities::String& text);

private:
    ConditionVocabulary();

    static ConditionVocabulary& Instance();

    void Enter(const char* key, const char* const* keywords);

    std::mutex mutex;
    Utilities::Map<Utilities::String, Utilities::Vector<Utilities::String>> table;
};

}
