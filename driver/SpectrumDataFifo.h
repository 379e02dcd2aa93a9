#pragma once

#include <cstddef>
#include <deque>

#include "driver/SpectrumData.h"

namespace DeviceDriver {

// The spectra of a strip, oldest first, with the mark that no more will come. The handle fills
// it and the instrument layer empties it, one after the other on the caller's thread.
class SpectrumDataFifo {
public:
    SpectrumDataFifo() = default;
    SpectrumDataFifo(const SpectrumDataFifo&) = delete;
    SpectrumDataFifo& operator=(const SpectrumDataFifo&) = delete;

    void Push(const SpectrumData& spectrum);
    // False when the FIFO is empty.
    bool Pop(SpectrumData& spectrum);
    void Clear();
    std::size_t Size() const { return spectra.size(); }
    bool IsEmpty() const { return spectra.empty(); }
    void SetFinished(bool flag) { finished = flag; }
    bool IsFinished() const { return finished; }

private:
    std::deque<SpectrumData> spectra;
    bool finished = false;
};

}
