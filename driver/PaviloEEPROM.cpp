#include "driver/PaviloEEPROM.h"

#include <algorithm>
#include <utility>

#include "driver/ConfigurationData.h"
#include "driver/PaviloFunctionality.h"
#include "driver/PaviloRecordDefaults.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/String.h"

namespace DeviceDriver {

using Utilities::ExceptionOutOfBound;
using Utilities::ExceptionResourceNotAvailable;
using Utilities::List;
using Utilities::ListIterator;
using Utilities::String;

namespace {

constexpr std::uint16_t FormatWord = 1;
constexpr std::uint16_t EntryWidth = 6;
constexpr std::uint16_t EntriesOffset = 4;
constexpr const char* UncorrectableList = "EEPROM Error: unable to correct invalid entry list";

[[noreturn]] void RaiseFileNotFound(std::uint16_t id)
{
    throw ExceptionResourceNotAvailable(
        String("File with ID ") + String(static_cast<long>(id)) + String(" not found in EEPROM"));
}

// Rising ids, so that a repair with unchanged sizes gives every file the place it had when the
// instrument left the factory, and the log copies stay where they are.
std::vector<std::uint16_t> SortedIds(const ConfigurationData& data)
{
    const Utilities::Vector<std::uint16_t> all = data.AllIds();
    std::vector<std::uint16_t> ids;
    for (unsigned long i = 0; i < all.Size(); ++i) {
        ids.push_back(all[i]);
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

}

PaviloEEPROM::PaviloEEPROM(PaviloFunctionality* functionality) : protectedFromWrites(true), functionality(functionality)
{
}

List<PaviloEEPROM::Entry> PaviloEEPROM::ReadEntryList()
{
    if (entries.Size() != 0) {
        return entries;
    }
    std::uint8_t block[EntryListSize];
    functionality->ReadEEPROM(EntryListAddress, EntryListSize, block, EntryListSize);
    if (PaviloFunctionality::U16FromBytes(block) != FormatWord) {
        RepairWithDefaults();
    } else {
        ParseEntryList(block);
    }
    return entries;
}

void PaviloEEPROM::ParseEntryList(const std::uint8_t* block)
{
    // A damaged used length can't lead the reading out of the block.
    const std::uint16_t usedLength = std::min(PaviloFunctionality::U16FromBytes(block + 2), EntryListSize);
    for (std::uint16_t position = EntriesOffset; position + EntryWidth <= usedLength; position += EntryWidth) {
        entries.Append(Entry(PaviloFunctionality::U16FromBytes(block + position),
            PaviloFunctionality::U32FromBytes(block + position + 2)));
    }
}

void PaviloEEPROM::RepairWithDefaults()
{
    ConfigurationData calibration("Dummy");
    ConfigurationData log("Dummy");
    PaviloRecordDefaults::FillCalibration(calibration);
    PaviloRecordDefaults::FillLog(log);
    try {
        Repair(calibration, log);
    } catch (const ExceptionOutOfBound& refused) {
        throw ExceptionResourceNotAvailable(*refused.Text());
    }
}

void PaviloEEPROM::WriteEntryList()
{
    std::uint8_t block[EntryListSize];
    std::fill_n(block, EntryListSize, std::uint8_t{0xFF});
    PaviloFunctionality::ToBytes(FormatWord, block);
    PaviloFunctionality::ToBytes(static_cast<std::uint16_t>(entries.Size() * EntryWidth + EntriesOffset), block + 2);
    std::uint16_t position = EntriesOffset;
    for (ListIterator<const Entry> entry = std::as_const(entries).Begin(); entry.IsValid(); ++entry) {
        PaviloFunctionality::ToBytes(entry->key, block + position);
        PaviloFunctionality::ToBytes(entry->value, block + position + 2);
        position += EntryWidth;
    }
    if (protectedFromWrites) {
        return;
    }
    functionality->WriteEEPROM(EntryListAddress, EntryListSize, block, EntryListSize);
}

void PaviloEEPROM::Repair(const ConfigurationData& calibration, const ConfigurationData& log)
{
    if (protectedFromWrites) {
        throw ExceptionOutOfBound(UncorrectableList);
    }
    List<Entry> layout;
    LayOutRegion(layout, log, LogAddress, 0, EndOfLog, MirrorAddress);
    LayOutRegion(layout, log, MirrorAddress, MirrorOffset, EndOfMirror, EntryListAddress);
    LayOutRegion(layout, calibration, CalibrationAddress, 0, EndOfCalibration, EndAddress);
    if (layout.Size() > MaximumEntries) {
        throw ExceptionOutOfBound(UncorrectableList);
    }
    entries = layout;
    WriteEntryList();
}

// A region that would overflow into the next one is refused before anything is changed.
std::uint32_t PaviloEEPROM::LayOutRegion(List<Entry>& layout, const ConfigurationData& data, std::uint32_t address,
    std::uint16_t idOffset, std::uint16_t endMark, std::uint32_t limit)
{
    for (std::uint16_t id : SortedIds(data)) {
        layout.Append(Entry(static_cast<std::uint16_t>(id + idOffset), address));
        address += data.SizeOf(id);
        if (address > limit) {
            throw ExceptionOutOfBound(UncorrectableList);
        }
    }
    layout.Append(Entry(endMark, address));
    return address;
}

void PaviloEEPROM::EnsureEntryList()
{
    if (entries.Size() == 0) {
        ReadEntryList();
    }
}

const PaviloEEPROM::Entry* PaviloEEPROM::FindEntry(std::uint16_t id, const Entry** following)
{
    EnsureEntryList();
    for (ListIterator<const Entry> entry = std::as_const(entries).Begin(); entry.IsValid(); ++entry) {
        if (entry->key != id) {
            continue;
        }
        const Entry* found = &entry.Current();
        ++entry;
        *following = entry.IsValid() ? &entry.Current() : nullptr;
        return found;
    }
    RaiseFileNotFound(id);
}

std::uint32_t PaviloEEPROM::FileAddress(std::uint16_t id)
{
    const Entry* following = nullptr;
    return FindEntry(id, &following)->value;
}

std::uint16_t PaviloEEPROM::FileSize(std::uint16_t id)
{
    const Entry* following = nullptr;
    const Entry* entry = FindEntry(id, &following);
    // The last entry, and one that a damaged list puts behind its successor, hold nothing.
    if (following == nullptr || following->value < entry->value) {
        return 0;
    }
    return static_cast<std::uint16_t>(following->value - entry->value);
}

void PaviloEEPROM::ReadFile(std::uint16_t id, std::vector<std::uint8_t>& buffer, std::uint16_t& size)
{
    const std::uint16_t fileSize = FileSize(id);
    const std::uint32_t address = FileAddress(id);
    std::vector<std::uint8_t> bytes(fileSize);
    functionality->ReadEEPROM(address, fileSize, bytes.data(), fileSize);
    buffer.swap(bytes);
    size = fileSize;
}

bool PaviloEEPROM::WriteFile(std::uint16_t id, const std::uint8_t* data, std::uint16_t size)
{
    std::uint16_t fileSize = 0;
    std::uint32_t address = 0;
    try {
        fileSize = FileSize(id);
        address = FileAddress(id);
    } catch (const ExceptionResourceNotAvailable&) {
        return false;
    }
    if (size != fileSize) {
        return false;
    }
    if (protectedFromWrites && address + size >= EntryListAddress) {
        return true;
    }
    functionality->WriteEEPROM(address, size, data, size);
    return true;
}

std::vector<std::uint8_t> PaviloEEPROM::EncodeItem(const ConfigurationData& data, std::uint16_t id)
{
    const DataMember& item = data.ExistingItem(id);
    std::vector<std::uint8_t> bytes;
    if (item.Type() == DataMember::typeU32 || item.Type() == DataMember::typeU32Vector) {
        const Utilities::Vector<long>& words = item.Integers();
        bytes.resize(words.Size() * 4);
        for (unsigned long i = 0; i < words.Size(); ++i) {
            PaviloFunctionality::ToBytes(static_cast<std::uint32_t>(words[i]), bytes.data() + i * 4);
        }
    } else if (item.Type() == DataMember::typeFloat || item.Type() == DataMember::typeFloatVector) {
        const Utilities::Vector<float>& values = item.Floats();
        bytes.resize(values.Size() * 4);
        for (unsigned long i = 0; i < values.Size(); ++i) {
            PaviloFunctionality::ToBytes(values[i], bytes.data() + i * 4);
        }
    }
    return bytes;
}

void PaviloEEPROM::DecodeItem(ConfigurationData& data, std::uint16_t id, const std::vector<std::uint8_t>& bytes)
{
    const std::int32_t type = data.TypeOf(id);
    const unsigned long count = bytes.size() / 4;
    if ((type == DataMember::typeU32 || type == DataMember::typeFloat) && count == 0) {
        data.Mark(id, false);
    } else if (type == DataMember::typeU32) {
        data.SetU32(id, PaviloFunctionality::U32FromBytes(bytes.data()));
    } else if (type == DataMember::typeFloat) {
        data.SetFloat(id, PaviloFunctionality::FloatFromBytes(bytes.data()));
    } else if (type == DataMember::typeU32Vector) {
        Utilities::Vector<long> words(count);
        for (unsigned long i = 0; i < count; ++i) {
            words[i] = static_cast<long>(PaviloFunctionality::U32FromBytes(bytes.data() + i * 4));
        }
        data.SetU32Vector(id, words);
    } else if (type == DataMember::typeFloatVector) {
        Utilities::Vector<float> values(count);
        for (unsigned long i = 0; i < count; ++i) {
            values[i] = PaviloFunctionality::FloatFromBytes(bytes.data() + i * 4);
        }
        data.SetFloatVector(id, values);
    } else {
        data.Mark(id, false);
    }
}

}
