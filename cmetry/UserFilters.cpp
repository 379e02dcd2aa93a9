#include "cmetry/UserFilters.h"

#include <algorithm>

namespace CMetry {

UserFilters::UserFilters()
{
    for (auto& filter : table) {
        filter.fill(0.0f);
    }
}

UserFilters& UserFilters::Instance()
{
    static UserFilters filters;
    return filters;
}

void UserFilters::Set(const Utilities::Vector<HvSpectrum>& spectra)
{
    Table given;
    for (uint16_t filter = 0; filter < numberOfFilters; ++filter) {
        const HvSpectrum& spectrum = spectra[filter];
        std::copy(spectrum.GetValues(), spectrum.GetValues() + HvSpectrum::numberOfValues, given[filter].begin());
    }
    UserFilters& filters = Instance();
    std::lock_guard<std::mutex> lock(filters.mutex);
    filters.table = given;
}

Utilities::Vector<HvSpectrum> UserFilters::Get()
{
    const Table current = GetTable();
    Utilities::Vector<HvSpectrum> spectra(numberOfFilters);
    for (uint16_t filter = 0; filter < numberOfFilters; ++filter) {
        spectra[filter] = HvSpectrum(current[filter].data());
    }
    return spectra;
}

UserFilters::Table UserFilters::GetTable()
{
    UserFilters& filters = Instance();
    std::lock_guard<std::mutex> lock(filters.mutex);
    return filters.table;
}

}
