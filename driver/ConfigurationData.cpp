#include "driver/ConfigurationData.h"

#include "diagnostics/String.h"
#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

using Utilities::ExceptionOutOfBound;
using Utilities::String;
using Utilities::Vector;

namespace {

[[noreturn]] void RaiseNotAvailable(uint16_t id)
{
    throw ExceptionOutOfBound(String("Requested data is not available (ID ") + DataMap::KeyOf(id) + String(")"));
}

bool IdOfKey(const String& key, uint16_t& id)
{
    try {
        id = key.ToUnsignedShort();
        return true;
    } catch (const ExceptionOutOfBound&) {
        return false;
    }
}

}

ConfigurationData::ConfigurationData(const String& name) : name(name) { }

ConfigurationData::~ConfigurationData() = default;

const DataMember& ConfigurationData::Requested(uint16_t id) const
{
    const DataMember* item = FindItem(id);
    if (item == nullptr) {
        RaiseNotAvailable(id);
    }
    return *item;
}

DataMember& ConfigurationData::Requested(uint16_t id)
{
    DataMember* item = FindItem(id);
    if (item == nullptr) {
        RaiseNotAvailable(id);
    }
    return *item;
}

void ConfigurationData::GetU32(uint16_t id, uint32_t& value) const
{
    value = static_cast<uint32_t>(Requested(id).Integers()[0]);
}

void ConfigurationData::GetU32(uint16_t id, uint32_t& value, bool clearMark)
{
    DataMember& item = Requested(id);
    value = static_cast<uint32_t>(item.Integers()[0]);
    if (clearMark) {
        item.Mark(false);
    }
}

void ConfigurationData::GetFloat(uint16_t id, float& value) const
{
    value = Requested(id).Floats()[0];
}

void ConfigurationData::GetFloat(uint16_t id, float& value, bool clearMark)
{
    DataMember& item = Requested(id);
    value = item.Floats()[0];
    if (clearMark) {
        item.Mark(false);
    }
}

void ConfigurationData::GetU32Vector(uint16_t id, Vector<long>& vector) const
{
    vector = Requested(id).Integers();
}

void ConfigurationData::GetU32Vector(uint16_t id, Vector<long>& vector, bool clearMark)
{
    DataMember& item = Requested(id);
    vector = item.Integers();
    if (clearMark) {
        item.Mark(false);
    }
}

void ConfigurationData::GetFloatVector(uint16_t id, Vector<float>& vector) const
{
    vector = Requested(id).Floats();
}

void ConfigurationData::GetFloatVector(uint16_t id, Vector<float>& vector, bool clearMark)
{
    DataMember& item = Requested(id);
    vector = item.Floats();
    if (clearMark) {
        item.Mark(false);
    }
}

void ConfigurationData::SetU32(uint16_t id, uint32_t value)
{
    Vector<long> one(1);
    one[0] = static_cast<long>(value);
    Item(id).StoreIntegers(one, DataMember::typeU32);
}

void ConfigurationData::SetFloat(uint16_t id, float value)
{
    Vector<float> one(1);
    one[0] = value;
    Item(id).StoreFloats(one, DataMember::typeFloat);
}

void ConfigurationData::SetU32Vector(uint16_t id, const Vector<long>& vector)
{
    Item(id).StoreIntegers(vector, DataMember::typeU32Vector);
}

void ConfigurationData::SetFloatVector(uint16_t id, const Vector<float>& vector)
{
    Item(id).StoreFloats(vector, DataMember::typeFloatVector);
}

void ConfigurationData::Mark(uint16_t id, bool flag)
{
    Requested(id).Mark(flag);
}

void ConfigurationData::MarkAll(bool flag)
{
    for (Utilities::MapIterator<String, DataMember> entry = Begin(); entry.IsValid(); ++entry) {
        entry.Value().Mark(flag);
    }
}

int32_t ConfigurationData::TypeOf(uint16_t id) const
{
    return ExistingItem(id).Type();
}

uint32_t ConfigurationData::SizeOf(uint16_t id) const
{
    return ExistingItem(id).ByteSize();
}

Vector<uint16_t> ConfigurationData::AllIds() const
{
    return Ids(false);
}

Vector<uint16_t> ConfigurationData::MarkedIds() const
{
    return Ids(true);
}

Vector<uint16_t> ConfigurationData::Ids(bool onlyMarked) const
{
    Vector<uint16_t> found(Count());
    unsigned long count = 0;
    uint16_t id = 0;
    for (Utilities::MapIterator<String, const DataMember> entry = Begin(); entry.IsValid(); ++entry) {
        if ((!onlyMarked || entry.Value().IsMarked()) && IdOfKey(entry.Key(), id)) {
            found[count++] = id;
        }
    }
    Vector<uint16_t> ids(count);
    for (unsigned long i = 0; i < count; ++i) {
        ids[i] = found[i];
    }
    return ids;
}

Diagnostics::String ConfigurationData::GetValueString() const
{
    Diagnostics::String value("ConfigurationData '");
    value += name.CString();
    value += "', items: ";
    value += static_cast<long>(Count());
    return value;
}

}
