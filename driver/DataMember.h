#pragma once

#include <cstdint>

#include "utilities/Vector.h"

namespace DeviceDriver {

// One numbered item of a ConfigurationData: a u32 or a float, alone or as a vector, and the
// mark that says it is to be read or written. A scalar is a vector of one element.
class DataMember {
public:
    static constexpr int32_t typeNone = -1;
    static constexpr int32_t typeU32 = 0;
    static constexpr int32_t typeU32Vector = 1;
    static constexpr int32_t typeFloat = 2;
    static constexpr int32_t typeFloatVector = 3;

    DataMember();

    const Utilities::Vector<float>& Floats() const { return floats; }
    const Utilities::Vector<long>& Integers() const { return integers; }
    bool IsMarked() const { return modified; }
    int32_t Type() const { return type; }

    // The item holds the values and nothing of an earlier type; storing clears the mark.
    void StoreIntegers(const Utilities::Vector<long>& values, int32_t integerType);
    void StoreFloats(const Utilities::Vector<float>& values, int32_t floatType);
    void Mark(bool flag) { modified = flag; }

    // Four bytes for each element, as the item lies in the instrument's memory.
    uint32_t ByteSize() const;

private:
    Utilities::Vector<float> floats;
    Utilities::Vector<long> integers;
    bool modified;
    int32_t type;
};

}
