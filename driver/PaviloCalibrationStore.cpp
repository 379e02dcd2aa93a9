#include "driver/PaviloCalibrationStore.h"

#include <vector>

#include "driver/ConfigurationData.h"
#include "driver/ExceptionPaviloCommunication.h"
#include "driver/PaviloEEPROM.h"
#include "driver/PaviloFunctionality.h"
#include "driver/PaviloRecordDefaults.h"
#include "driver/ResetCodes.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/String.h"

namespace DeviceDriver {

using Utilities::ExceptionOutOfBound;
using Utilities::ExceptionResourceNotAvailable;
using Utilities::String;

namespace {

[[noreturn]] void RaiseEEPROMError(std::uint16_t id, const Utilities::Exception& failure)
{
    throw ExceptionOutOfBound(
        String("EEPROM Error (ID ") + String(static_cast<long>(id)) + String("): ") + *failure.Text());
}

// Sets the write protection again when the call that lifted it ends, however it ends.
class ProtectionLift {
public:
    ProtectionLift(PaviloEEPROM& eeprom, bool lift) : eeprom(eeprom), lifted(lift)
    {
        if (lifted) {
            eeprom.Unprotect();
        }
    }
    ~ProtectionLift()
    {
        if (lifted) {
            eeprom.Protect();
        }
    }
    ProtectionLift(const ProtectionLift&) = delete;
    ProtectionLift& operator=(const ProtectionLift&) = delete;

private:
    PaviloEEPROM& eeprom;
    bool lifted;
};

}

PaviloCalibrationStore::PaviloCalibrationStore(PaviloEEPROM& eeprom, PaviloFunctionality& functionality)
    : eeprom(eeprom), functionality(functionality)
{
}

void PaviloCalibrationStore::Read(ConfigurationData& calibration)
{
    if (calibration.Count() == 0) {
        PaviloRecordDefaults::FillCalibration(calibration);
    }
    const Utilities::Vector<std::uint16_t> ids = calibration.MarkedIds();
    for (unsigned long i = 0; i < ids.Size(); ++i) {
        ReadItem(calibration, ids[i]);
    }
}

void PaviloCalibrationStore::ReadItem(ConfigurationData& calibration, std::uint16_t id)
{
    std::vector<std::uint8_t> bytes;
    std::uint16_t size = 0;
    try {
        eeprom.ReadFile(id, bytes, size);
    } catch (const ExceptionResourceNotAvailable&) {
        calibration.Mark(id, false);
        return;
    } catch (const ExceptionPaviloCommunication& failure) {
        ResetIgnoringFailure(ResetCodes::eepromRead);
        RaiseEEPROMError(id, failure);
    }
    PaviloEEPROM::DecodeItem(calibration, id, bytes);
    calibration.Mark(id, false);
}

void PaviloCalibrationStore::Write(ConfigurationData& calibration, bool unlock, ConfigurationData& log)
{
    const ProtectionLift lift(eeprom, unlock);
    if (!WriteMarked(calibration)) {
        RebuildAround(calibration, log);
    }
}

bool PaviloCalibrationStore::WriteMarked(ConfigurationData& calibration)
{
    const Utilities::Vector<std::uint16_t> ids = calibration.MarkedIds();
    for (unsigned long i = 0; i < ids.Size(); ++i) {
        if (!WriteItem(calibration, ids[i])) {
            return false;
        }
        calibration.Mark(ids[i], false);
    }
    return true;
}

// The new layout holds every record that the EEPROM has, so that a map of a few records can't
// leave the others without a place.
void PaviloCalibrationStore::RebuildAround(ConfigurationData& calibration, ConfigurationData& log)
{
    ConfigurationData complete("Temp Calibration Data");
    Read(complete);
    const Utilities::Vector<std::uint16_t> ids = calibration.AllIds();
    for (unsigned long i = 0; i < ids.Size(); ++i) {
        complete.Item(ids[i]) = calibration.ExistingItem(ids[i]);
    }
    eeprom.Repair(complete, log);
    log.MarkAll(true);
    complete.MarkAll(true);
    if (!WriteMarked(complete)) {
        throw ExceptionOutOfBound("EEPROM Error: file system problem");
    }
    calibration.MarkAll(false);
}

bool PaviloCalibrationStore::WriteItem(const ConfigurationData& calibration, std::uint16_t id)
{
    const std::vector<std::uint8_t> bytes = PaviloEEPROM::EncodeItem(calibration, id);
    if (bytes.size() > PaviloEEPROM::EndAddress) {
        return false;
    }
    try {
        return eeprom.WriteFile(id, bytes.data(), static_cast<std::uint16_t>(bytes.size()));
    } catch (const ExceptionPaviloCommunication& failure) {
        eeprom.Protect();
        ResetIgnoringFailure(ResetCodes::eepromWrite);
        RaiseEEPROMError(id, failure);
    } catch (const ExceptionResourceNotAvailable& failure) {
        RaiseEEPROMError(id, failure);
    }
}

void PaviloCalibrationStore::ResetIgnoringFailure(std::uint16_t code)
{
    try {
        functionality.Reset(code);
    } catch (const Utilities::Exception&) {
        // The family's own failure is the one to report.
        return;
    }
}

}
