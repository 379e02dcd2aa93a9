#pragma once

#include <array>
#include <mutex>

#include "cmetry/HvSpectrum.h"
#include "utilities/Vector.h"

namespace CMetry {

// The four filters of density standard "User", black, cyan, magenta and yellow, for the whole
// process; all zero until first set. They are taken as given, black included, and not normalised.
class UserFilters {
public:
    static constexpr uint16_t numberOfFilters = 4;
    using Table = std::array<std::array<float, HvSpectrum::numberOfValues>, numberOfFilters>;

    // The values of the first four spectra; fewer fail with ExceptionOutOfBound and change nothing.
    static void Set(const Utilities::Vector<HvSpectrum>& spectra);
    // Four spectra of the filters under new conditions.
    static Utilities::Vector<HvSpectrum> Get();
    static Table GetTable();

private:
    UserFilters();

    static UserFilters& Instance();

    std::mutex mutex;
    Table table;
};

// The names the density interface knows them by.
inline void SetUserFilters(const Utilities::Vector<HvSpectrum>& spectra)
{
    UserFilters::Set(spectra);
}

inline Utilities::Vector<HvSpectrum> GetUserFilters()
{
    return UserFilters::Get();
}

}
