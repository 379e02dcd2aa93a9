#include "driver/CpldProgramRegistry.h"

#include <map>
#include <mutex>
#include <utility>

#include "utilities/ExceptionOutOfBound.h"
#include "utilities/LanguageTranslator.h"

namespace DeviceDriver {

namespace {

struct Programs {
    std::mutex lock;
    std::uint32_t lastNumber = 0;
    std::map<std::uint32_t, std::vector<CpldStep>> byNumber;
};

Programs& Entered()
{
    static Programs programs;
    return programs;
}

}

std::uint32_t CpldProgramRegistry::Add(std::vector<CpldStep> program)
{
    Programs& programs = Entered();
    std::lock_guard<std::mutex> guard(programs.lock);
    do {
        ++programs.lastNumber;
    } while (programs.lastNumber == 0 || programs.byNumber.contains(programs.lastNumber));
    programs.byNumber.emplace(programs.lastNumber, std::move(program));
    return programs.lastNumber;
}

void CpldProgramRegistry::Remove(std::uint32_t number)
{
    Programs& programs = Entered();
    std::lock_guard<std::mutex> guard(programs.lock);
    programs.byNumber.erase(number);
}

std::vector<CpldStep> CpldProgramRegistry::Find(std::uint32_t number)
{
    Programs& programs = Entered();
    std::lock_guard<std::mutex> guard(programs.lock);
    const auto found = programs.byNumber.find(number);
    if (found == programs.byNumber.end()) {
        throw Utilities::ExceptionOutOfBound(
            Utilities::LanguageTranslator().Translate("CPLD Error: Program not found"));
    }
    return found->second;
}

}
