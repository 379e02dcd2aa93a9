#include "cmetry/WeightfactorCache.h"

#include <algorithm>

namespace CMetry {

using Utilities::SmartPointer;

namespace {

const HvSpectrum* SpectrumAddress(const SmartPointer<HvSpectrum>& spectrum)
{
    return spectrum.IsNull() ? nullptr : &*spectrum;
}

}

WeightfactorCache::WeightfactorCache()
    : illumination(HvMeasureConditions().GetIllumination()), observer(HvMeasureConditions().GetObserver())
{
}

WeightfactorCache& WeightfactorCache::Instance()
{
    static WeightfactorCache cache;
    return cache;
}

// Weights are built outside the lock, so that threads with cached weights never wait for a
// build; when two threads build at once, the last to finish stays cached.
SmartPointer<const Weightfactors> WeightfactorCache::Update(const HvMeasureConditions& conditions)
{
    WeightfactorCache& cache = Instance();
    {
        std::lock_guard<std::mutex> lock(cache.mutex);
        if (cache.Fits(conditions)) {
            return cache.weightfactors;
        }
    }
    const SmartPointer<const Weightfactors> built(new Weightfactors(conditions));
    std::lock_guard<std::mutex> lock(cache.mutex);
    cache.Store(built, conditions);
    return built;
}

bool WeightfactorCache::Fits(const HvMeasureConditions& conditions) const
{
    return !weightfactors.IsNull() && illumination == conditions.GetIllumination() &&
        observer == conditions.GetObserver() &&
        SpectrumAddress(userDefinedIllumination) == SpectrumAddress(conditions.GetUserDefinedIlluminationPointer());
}

void WeightfactorCache::Store(const SmartPointer<const Weightfactors>& built, const HvMeasureConditions& conditions)
{
    weightfactors = built;
    illumination = conditions.GetIllumination();
    observer = conditions.GetObserver();
    userDefinedIllumination = conditions.GetUserDefinedIlluminationPointer();
}

SmartPointer<const Weightfactors> WeightfactorCache::GetWeightfactors()
{
    WeightfactorCache& cache = Instance();
    std::lock_guard<std::mutex> lock(cache.mutex);
    return cache.weightfactors;
}

Utilities::Vector<float> WeightfactorCache::GetWeights(uint16_t axis)
{
    const std::span<const float> weights = GetWeightfactors()->GetWeights(axis);
    Utilities::Vector<float> copy(weights.size());
    std::copy(weights.begin(), weights.end(), &copy[0]);
    return copy;
}

float WeightfactorCache::GetWhitePoint(uint16_t axis)
{
    const SmartPointer<const Weightfactors> current = GetWeightfactors();
    return current.IsNull() ? 0.0f : current->GetWhitePoint(axis);
}

IlluminationTYPE WeightfactorCache::GetIllumination()
{
    WeightfactorCache& cache = Instance();
    std::lock_guard<std::mutex> lock(cache.mutex);
    return cache.illumination;
}

Observer WeightfactorCache::GetObserver()
{
    WeightfactorCache& cache = Instance();
    std::lock_guard<std::mutex> lock(cache.mutex);
    return cache.observer;
}

}
