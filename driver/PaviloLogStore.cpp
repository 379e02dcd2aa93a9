#include "driver/PaviloLogStore.h"

#include <bit>
#include <vector>

#include "driver/ConfigurationData.h"
#include "driver/ExceptionPaviloCommunication.h"
#include "driver/PaviloCalibrationStore.h"
#include "driver/PaviloEEPROM.h"
#include "driver/PaviloFunctionality.h"
#include "driver/PaviloRecordDefaults.h"
#include "driver/RecordIds.h"
#include "driver/ResetCodes.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"

namespace DeviceDriver {

using Utilities::ExceptionOutOfBound;
using Utilities::ExceptionResourceNotAvailable;
using Utilities::String;

namespace {

std::uint16_t FileIdOf(std::uint16_t id, bool mirror)
{
    return mirror ? static_cast<std::uint16_t>(id + PaviloEEPROM::MirrorOffset) : id;
}

std::uint32_t SumOf(const DataMember& item)
{
    std::uint32_t sum = 0;
    if (item.Type() == DataMember::typeU32 || item.Type() == DataMember::typeU32Vector) {
        for (unsigned long i = 0; i < item.Integers().Size(); ++i) {
            sum += static_cast<std::uint32_t>(item.Integers()[i]);
        }
    } else if (item.Type() == DataMember::typeFloat || item.Type() == DataMember::typeFloatVector) {
        for (unsigned long i = 0; i < item.Floats().Size(); ++i) {
            sum += std::bit_cast<std::uint32_t>(item.Floats()[i]);
        }
    }
    return sum;
}

}

PaviloLogStore::PaviloLogStore(PaviloEEPROM& eeprom, PaviloFunctionality& functionality)
    : eeprom(eeprom), functionality(functionality)
{
}

std::uint32_t PaviloLogStore::Checksum(const ConfigurationData& copy)
{
    std::uint32_t sum = 0;
    const Utilities::Vector<std::uint16_t> ids = copy.AllIds();
    for (unsigned long i = 0; i < ids.Size(); ++i) {
        if (ids[i] != LogRecords::checksum) {
            sum += SumOf(copy.ExistingItem(ids[i]));
        }
    }
    return sum;
}

bool PaviloLogStore::IsGood(const ConfigurationData& copy)
{
    const DataMember* stored = copy.FindItem(LogRecords::checksum);
    return stored != nullptr && stored->Integers().Size() == 1 &&
        static_cast<std::uint32_t>(stored->Integers()[0]) == Checksum(copy);
}

void PaviloLogStore::Load(ConfigurationData& log)
{
    ConfigurationData mirrorCopy("LogData");
    PaviloRecordDefaults::FillLog(mirrorCopy);
    log.MarkAll(true);
    const Utilities::Vector<std::uint16_t> ids = log.MarkedIds();
    for (unsigned long i = 0; i < ids.Size(); ++i) {
        LoadItem(log, mirrorCopy, ids[i]);
    }
    const bool mainGood = IsGood(log);
    const bool mirrorGood = IsGood(mirrorCopy);
    if (!mainGood && !mirrorGood) {
        ConfigurationData defaults("LogData");
        PaviloRecordDefaults::FillLog(defaults);
        log = defaults;
        log.MarkAll(true);
        Write(log, false);
        Write(log, true);
    } else if (!mainGood) {
        log = mirrorCopy;
        log.MarkAll(true);
        Write(log, false);
    } else if (!mirrorGood) {
        log.MarkAll(true);
        Write(log, true);
    }
}

void PaviloLogStore::LoadItem(ConfigurationData& log, ConfigurationData& mirrorCopy, std::uint16_t id)
{
    std::vector<std::uint8_t> mirrorBytes;
    std::vector<std::uint8_t> mainBytes;
    std::uint16_t size = 0;
    try {
        eeprom.ReadFile(FileIdOf(id, true), mirrorBytes, size);
        eeprom.ReadFile(id, mainBytes, size);
    } catch (const ExceptionResourceNotAvailable&) {
        log.Mark(id, false);
        return;
    } catch (const ExceptionPaviloCommunication& failure) {
        RaiseLogError(id, "): ", failure, ResetAfterFailure(ResetCodes::eepromRead));
    }
    if (mirrorCopy.FindItem(id) == nullptr) {
        mirrorCopy.Item(id) = log.ExistingItem(id);
    }
    PaviloEEPROM::DecodeItem(mirrorCopy, id, mirrorBytes);
    PaviloEEPROM::DecodeItem(log, id, mainBytes);
}

void PaviloLogStore::Write(ConfigurationData& log, bool mirror)
{
    if (log.MarkedIds().Size() != 0) {
        log.SetU32(LogRecords::checksum, Checksum(log));
        log.Mark(LogRecords::checksum, true);
    }
    if (WriteMarked(log, mirror)) {
        return;
    }
    RepairFileSystem(log);
    if (!WriteMarked(log, mirror)) {
        throw ExceptionOutOfBound("EEPROM Error: log file system problem");
    }
}

bool PaviloLogStore::WriteMarked(const ConfigurationData& log, bool mirror)
{
    const Utilities::Vector<std::uint16_t> ids = log.MarkedIds();
    for (unsigned long i = 0; i < ids.Size(); ++i) {
        const std::uint16_t id = ids[i];
        const std::vector<std::uint8_t> bytes = PaviloEEPROM::EncodeItem(log, id);
        if (bytes.size() > PaviloEEPROM::EndAddress) {
            return false;
        }
        try {
            if (!eeprom.WriteFile(FileIdOf(id, mirror), bytes.data(), static_cast<std::uint16_t>(bytes.size()))) {
                return false;
            }
        } catch (const ExceptionResourceNotAvailable& failure) {
            RaiseLogError(id, mirror ? " mirror not found): " : " not found): ", failure, String());
        } catch (const ExceptionPaviloCommunication& failure) {
            RaiseLogError(id, mirror ? " mirror): " : "): ", failure, ResetAfterFailure(ResetCodes::eepromWrite));
        }
    }
    return true;
}

// All addresses may move, so the calibration records are written again at theirs, and all of
// the log data is marked for this copy and the next.
void PaviloLogStore::RepairFileSystem(ConfigurationData& log)
{
    PaviloCalibrationStore calibrationStore(eeprom, functionality);
    ConfigurationData calibration("Temp Calibration Data");
    calibrationStore.Read(calibration);
    eeprom.Repair(calibration, log);
    calibration.MarkAll(true);
    calibrationStore.Write(calibration, false, log);
    log.MarkAll(true);
}

String PaviloLogStore::ResetAfterFailure(std::uint16_t code)
{
    try {
        functionality.Reset(code);
    } catch (const Utilities::Exception&) {
        return String("[reset impossible] ");
    }
    return String();
}

void PaviloLogStore::RaiseLogError(
    std::uint16_t id, const char* copy, const Utilities::Exception& failure, const String& resetNote)
{
    throw ExceptionOutOfBound(
        String("Log Error (ID ") + String(static_cast<long>(id)) + String(copy) + resetNote + *failure.Text());
}

}
