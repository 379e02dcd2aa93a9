#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include "cmetry/Enumerations.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/IlluminationTYPE.h"
#include "cmetry/Weightfactors.h"
#include "utilities/SmartPointer.h"
#include "utilities/Vector.h"

namespace CMetry {

// The weights of the last illuminant and observer, for the whole process. Weights depend on
// nothing else, so they survive changes of colour space, white base or density settings; a
// change of illuminant or observer builds new ones. A set of weights is never changed once
// built: callers keep the set Update gave them, whatever other threads do to the cache meanwhile.
class WeightfactorCache {
public:
    // The weights for the illumination, observer and user-defined illumination of the
    // conditions, built anew only when one of these differs from those of the cached set.
    static Utilities::SmartPointer<const Weightfactors> Update(const HvMeasureConditions& conditions);

    // The cached set; null before the first Update.
    static Utilities::SmartPointer<const Weightfactors> GetWeightfactors();
    // A copy of the weights of an axis of the cached set; fails with ExceptionNullpointer
    // "Failed to access to nullpointer." before the first Update.
    static Utilities::Vector<float> GetWeights(uint16_t axis);
    // The white value of an axis of the cached set, 0 before the first Update.
    static float GetWhitePoint(uint16_t axis);
    // What the cached set was built for; those of new conditions before the first Update.
    static IlluminationTYPE GetIllumination();
    static Observer GetObserver();

private:
    // A set of weights with what it was built for.
    struct Entry {
        bool Fits(const HvMeasureConditions& conditions) const;

        Utilities::SmartPointer<const Weightfactors> weightfactors;
        IlluminationTYPE illumination;
        Observer observer{};
        // Held, not only compared, so that no other spectrum can take its address while it is cached.
        Utilities::SmartPointer<HvSpectrum> userDefinedIllumination;
    };

    // What a thread last took from the cache, and under which generation of it.
    struct Taken {
        std::uint64_t generation = 0;
        Entry entry;
    };

    WeightfactorCache();

    static WeightfactorCache& Instance();
    static Taken& TakenByThisThread();

    Utilities::SmartPointer<const Weightfactors> TakeOrBuild(const HvMeasureConditions& conditions, Taken& taken);
    void Store(const Utilities::SmartPointer<const Weightfactors>& built, const HvMeasureConditions& conditions);

    mutable std::mutex mutex;
    Entry cached;
    // Counts the sets stored, from 1; a thread's own copy of the cached entry is good while it
    // still names the current one, so that a spectrum under cached weights takes no lock.
    std::atomic<std::uint64_t> generation{1};
};

}
