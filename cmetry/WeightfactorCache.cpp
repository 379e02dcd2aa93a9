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
{
    const HvMeasureConditions defaults;
    cached.illumination = defaults.GetIllumination();
    cached.observer = defaults.GetObserver();
}

WeightfactorCache& WeightfactorCache::Instance()
{
    static WeightfactorCache cache;
    return cache;
}

WeightfactorCache::Taken& WeightfactorCache::TakenByThisThread()
{
    thread_local Taken taken;
    return taken;
}

SmartPointer<const Weightfactors> WeightfactorCache::Update(const HvMeasureConditions& conditions)
{
    WeightfactorCache& cache = Instance();
    Taken& taken = TakenByThisThread();
    if (taken.generation == cache.generation.load(std::memory_order_acquire) && taken.entry.Fits(conditions)) {
        return taken.entry.weightfactors;
    }
    return cache.TakeOrBuild(conditions, taken);
}

// The shared set if it fits, else one built and shared; either way the thread's copy is renewed.
// Weights are built outside the lock, so that threads with cached weights never wait for a
// build; when two threads build at once, the last to finish stays cached.
SmartPointer<const Weightfactors> WeightfactorCache::TakeOrBuild(const HvMeasureConditions& conditions, Taken& taken)
{
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (cached.Fits(conditions)) {
            taken = {generation.load(std::memory_order_relaxed), cached};
            return cached.weightfactors;
        }
    }
    const SmartPointer<const Weightfactors> built(new Weightfactors(conditions));
    std::lock_guard<std::mutex> lock(mutex);
    Store(built, conditions);
    taken = {generation.load(std::memory_order_relaxed), cached};
    return built;
}

bool WeightfactorCache::Entry::Fits(const HvMeasureConditions& conditions) const
{
    return !weightfactors.IsNull() && illumination == conditions.GetIllumination() &&
        observer == conditions.GetObserver() &&
        SpectrumAddress(userDefinedIllumination) == SpectrumAddress(conditions.GetUserDefinedIlluminationPointer());
}

void WeightfactorCache::Store(const SmartPointer<const Weightfactors>& built, const HvMeasureConditions& conditions)
{
    cached = {
        built, conditions.GetIllumination(), conditions.GetObserver(), conditions.GetUserDefinedIlluminationPointer()};
    generation.fetch_add(1, std::memory_order_release);
}

SmartPointer<const Weightfactors> WeightfactorCache::GetWeightfactors()
{
    WeightfactorCache& cache = Instance();
    std::lock_guard<std::mutex> lock(cache.mutex);
    return cache.cached.weightfactors;
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
    return cache.cached.illumination;
}

Observer WeightfactorCache::GetObserver()
{
    WeightfactorCache& cache = Instance();
    std::lock_guard<std::mutex> lock(cache.mutex);
    return cache.cached.observer;
}

}
