#pragma once

#include <cstdint>

#include "driver/DataMap.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Diagnostics {
class String;
}

namespace DeviceDriver {

// A named dictionary of numbered items: calibration records, measure conditions and log data.
// A mark on an item says that it is to be read from or written to the instrument. A copy
// takes the name too.
class ConfigurationData : public DataMap {
public:
    explicit ConfigurationData(const Utilities::String& name = "Unknown");
    ConfigurationData(const ConfigurationData& other) = default;
    ConfigurationData& operator=(const ConfigurationData& other) = default;
    ~ConfigurationData() override;

    const Utilities::String& Name() const { return name; }

    // A missing id raises ExceptionOutOfBound. With clearMark the item's mark is cleared
    // once the value has been read.
    void GetU32(uint16_t id, uint32_t& value) const;
    void GetU32(uint16_t id, uint32_t& value, bool clearMark);
    void GetFloat(uint16_t id, float& value) const;
    void GetFloat(uint16_t id, float& value, bool clearMark);
    void GetU32Vector(uint16_t id, Utilities::Vector<long>& vector) const;
    void GetU32Vector(uint16_t id, Utilities::Vector<long>& vector, bool clearMark);
    void GetFloatVector(uint16_t id, Utilities::Vector<float>& vector) const;
    void GetFloatVector(uint16_t id, Utilities::Vector<float>& vector, bool clearMark);

    // Makes the item if needed; its mark is cleared.
    void SetU32(uint16_t id, uint32_t value);
    void SetFloat(uint16_t id, float value);
    void SetU32Vector(uint16_t id, const Utilities::Vector<long>& vector);
    void SetFloatVector(uint16_t id, const Utilities::Vector<float>& vector);

    void Mark(uint16_t id, bool flag);
    void MarkAll(bool flag);

    // A missing id raises the Map's ExceptionOutOfBound.
    int32_t TypeOf(uint16_t id) const;
    uint32_t SizeOf(uint16_t id) const;

    unsigned long Count() const { return Size(); }

    // The ids in the order of iteration; a key that is not a number is left out.
    Utilities::Vector<uint16_t> AllIds() const;
    Utilities::Vector<uint16_t> MarkedIds() const;

    virtual Diagnostics::String GetValueString() const;

private:
    const DataMember& Requested(uint16_t id) const;
    DataMember& Requested(uint16_t id);
    Utilities::Vector<uint16_t> Ids(bool onlyMarked) const;

    Utilities::String name;
};

}
