#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

#include "driver/ConfigurationData.h"
#include "driver/DriverCalculation.h"
#include "driver/LowLevelDriver.h"
#include "driver/SensorData.h"
#include "driver/SensorDataFifo.h"
#include "driver/SpectrumData.h"
#include "driver/SpectrumDataFifo.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/MutexLock.h"
#include "utilities/Observer.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Utilities {
class Exception;
}

namespace DeviceDriver {

// One way of using the instrument, as the instrument layer sees it. A handle keeps its own copy
// of the measure conditions, its calculation and the last sample, and knows the steps of each of
// its measurement types. Operations that answer bool leave the reason of a false answer in
// GetLastError. A handle is used by one client thread at a time, under Lock; the driver tells it
// of a lost connection on a notifier thread.
class MeasurementHandle : public Utilities::Observer<long> {
public:
    static constexpr long lostConnectionEvent = 1;

    MeasurementHandle();
    MeasurementHandle(const MeasurementHandle&) = delete;
    MeasurementHandle& operator=(const MeasurementHandle&) = delete;
    ~MeasurementHandle() override;

    // Only marks a lost connection: the client thread closes and reopens at its next operation.
    void Update(Utilities::Observee<long>* source, long event) override;

    virtual bool Measure(const Utilities::String& type) = 0;
    virtual bool Calibrate() = 0;
    virtual bool GetScan(SpectrumDataFifo*& fifo);
    virtual bool GetResult(SpectrumData& target);
    virtual bool GetConditions(ConfigurationData& map, bool read);
    virtual bool SetConditions(ConfigurationData& map, bool write);
    virtual bool Connect(const Utilities::String& connection);
    virtual bool Open();
    virtual bool Close();
    virtual Utilities::String GetLastError();
    virtual bool GetState(uint16_t id, long& value);
    virtual Utilities::String GetMode() = 0;
    // These raise ExceptionOutOfBound; they are steps of the operations above.
    virtual void MeasureSensor(SensorData& sensor);
    virtual void MeasureStrip(SensorDataFifo& fifo);
    virtual Utilities::Vector<long>& MeasureDark(Utilities::Vector<long>& row);
    // Reopens a handle that has a connection but lost its place at the driver.
    virtual bool IsOpen();

    static constexpr unsigned long lockTimeoutMs = 10000;

    // The lock of the connection, shared by all handles of it in every process.
    bool Lock(unsigned long timeoutMs = lockTimeoutMs);
    void Unlock();

    ConfigurationData& Conditions() { return conditions; }

protected:
    static const char* const noError;
    static const char* const notOpen;
    static const char* const handleNotOpen;

    // The frame of Measure and Calibrate: the steps run on an open handle under one hold of the
    // device's lock, and a failure of the driver ends in the last error and the answer false.
    template<class Steps>
    bool RunOnOpenHandle(Steps&& steps)
    {
        if (!IsOpen()) {
            SetLastError(handleNotOpen);
            return false;
        }
        try {
            HoldingDevice(steps);
        } catch (const Utilities::ExceptionOutOfBound& failure) {
            SetLastError(failure);
            return false;
        }
        SetLastError(noError);
        return true;
    }

    // The steps of one operation under one hold of the device's lock, so that their transfers find
    // it held and the lock file is taken once for the operation, not once per step. The listener
    // of the device waits for the lock meanwhile: it tells of key presses and of a lost cable once
    // the operation ends, and a transfer that finds the instrument gone fails the operation itself.
    template<class Steps>
    void HoldingDevice(Steps&& steps)
    {
        Utilities::Mutex device = driver->GetDeviceMutex();
        const Utilities::MutexLock held(device);
        const HolderMark mark(deviceHolder);
        steps();
    }

    void SetLastError(const Utilities::String& text) { lastError = text; }
    void SetLastError(const Utilities::Exception& failure);
    // Raises ExceptionOutOfBound "Measurement handle is not open!" when IsOpen is false.
    void RequireOpen();
    // Sets a condition item, marks it to go to the instrument before the next measurement.
    void SetConditionU32(uint16_t id, uint32_t value);
    void SetConditionFloat(uint16_t id, float value);
    uint32_t ConditionU32(uint16_t id) const;
    float ConditionFloat(uint16_t id) const;
    // Raises ExceptionOutOfBound with the text, translated.
    [[noreturn]] static void Raise(const Utilities::String& text);
    static void Sleep(uint32_t milliseconds);
    bool IsAttached() const;

    bool conditionsChanged = true;
    Utilities::String lastError;
    SpectrumDataFifo sampleFifo;
    Utilities::SmartPointer<DriverCalculation> calculation;
    SpectrumData sample;
    Utilities::SmartPointer<LowLevelDriver> driver;
    Utilities::String connection;
    ConfigurationData conditions;

private:
    void LoadCalibrationAndConditions();
    void ReopenAfterLostConnection();
    void SendChangedConditions();
    void SendConditionsBeforeDetach();
    void RestoreLampItems(uint32_t lampOff, uint32_t replacementCount);

    // Marks the calling thread as the holder of the device's lock for as long as it lives.
    class HolderMark {
    public:
        explicit HolderMark(std::atomic<std::thread::id>& holder)
            : holder(holder), previous(holder.exchange(std::this_thread::get_id()))
        {
        }
        ~HolderMark() { holder.store(previous); }
        HolderMark(const HolderMark&) = delete;
        HolderMark& operator=(const HolderMark&) = delete;

    private:
        std::atomic<std::thread::id>& holder;
        const std::thread::id previous;
    };

    std::atomic<bool> connectionLost{false};
    // The thread whose operation holds the device's lock, if any.
    std::atomic<std::thread::id> deviceHolder;
};

}
