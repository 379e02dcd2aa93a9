#include "driver/DataMember.h"

namespace DeviceDriver {

namespace {

// The items are 32-bit words; a long holds a word as the signed 32-bit reading of its bits,
// so that a u32 of all ones and a pixel of -1 are the same value whichever way they came in.
long AsWord(long value)
{
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}

}

DataMember::DataMember() : floats(0), integers(0), modified(true), type(typeNone) { }

void DataMember::StoreIntegers(const Utilities::Vector<long>& values, int32_t integerType)
{
    Utilities::Vector<long> words(values.Size());
    for (unsigned long i = 0; i < values.Size(); ++i) {
        words[i] = AsWord(values[i]);
    }
    integers = words;
    floats = Utilities::Vector<float>(0);
    modified = false;
    type = integerType;
}

void DataMember::StoreFloats(const Utilities::Vector<float>& values, int32_t floatType)
{
    floats = values;
    integers = Utilities::Vector<long>(0);
    modified = false;
    type = floatType;
}

uint32_t DataMember::ByteSize() const
{
    return static_cast<uint32_t>((floats.Size() + integers.Size()) * 4);
}

}
