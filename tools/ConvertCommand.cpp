#include "tools/ConvertCommand.h"

#include <fstream>
#include <iostream>
#include <optional>

#include "cmetry/ConditionKey.h"
#include "cmetry/PaperWhite.h"
#include "cmetry/SpectrumBatch.h"
#include "orbel.h"
#include "tools/CliError.h"
#include "tools/ConvertedWriter.h"
#include "tools/SpectrumFile.h"
#include "tools/SpectrumReader.h"
#include "utilities/Exception.h"

namespace OrbelCli {

namespace {

// Large enough for the batch path to run at full speed, small enough to stay in the cache.
constexpr std::size_t blockSpectra = 4096;

// orbel measure names the formulas as the standards do; convert takes those names too.
std::string ModuleName(const std::string& value)
{
    if (value == "CIE76") {
        return "CIELab";
    }
    return value == "CIE94" ? "94" : value;
}

CMetry::HvMeasureConditions ConditionsFrom(const Arguments& arguments)
{
    const std::pair<const char*, const char*> settings[] = {
        {"--illuminant", CMetry::ConditionKey::illumination},
        {"--observer", CMetry::ConditionKey::observer},
        {"--density-standard", CMetry::ConditionKey::densityStandard},
        {"--delta-e", CMetry::ConditionKey::deltaEFormula},
    };
    CMetry::HvMeasureConditions conditions;
    for (const auto& [option, key] : settings) {
        if (const auto value = arguments.Get(option)) {
            try {
                conditions.SetCondition(key, ModuleName(*value).c_str());
            } catch (const Utilities::Exception&) {
                throw CliError::Usage(std::string(option) + " doesn't know '" + *value + "'");
            }
        }
    }
    return conditions;
}

// The first spectrum of a file: what convert reads, or 36 plain values as orbel substrate writes
// them. Read as a stream, since a reference may be the large file itself.
std::optional<Spectrum> FirstSpectrumOf(const std::optional<std::string>& path)
{
    if (!path) {
        return std::nullopt;
    }
    std::ifstream file(*path);
    if (!file) {
        throw CliError(OB_InvalidArgument, "can't read the spectrum file " + *path);
    }
    SpectrumReader reader(file, *path);
    SpectrumReader::Record record;
    try {
        reader.Next(record);
        return record.spectrum;
    } catch (const CliError&) {
        try {
            return SpectrumFile::Read(*path);
        } catch (const CliError&) {
        }
        throw;
    }
}

// False when the file has ended.
bool ReadBlock(SpectrumReader& reader, Block& block)
{
    block.names.clear();
    block.spectra.clear();
    SpectrumReader::Record record;
    while (block.names.size() < blockSpectra) {
        if (!reader.Next(record)) {
            return false;
        }
        block.names.push_back(record.name);
        block.spectra.insert(block.spectra.end(), record.spectrum.begin(), record.spectrum.end());
    }
    return true;
}

void Convert(
    const CMetry::SpectrumBatch& batch, bool withDensity, const std::optional<Spectrum>& reference, Block& block)
try {
    const std::size_t count = block.names.size();
    block.xyz.resize(3 * count);
    block.lab.resize(3 * count);
    batch.GetXYZ(block.spectra, block.xyz);
    batch.GetLab(block.spectra, block.lab);
    if (withDensity) {
        block.density.resize(count);
        batch.GetDensities(block.spectra, block.density);
    }
    if (reference) {
        block.deltaE.resize(count);
        batch.GetDeltaE(reference->data(), block.spectra, block.deltaE);
    }
} catch (const Utilities::Exception& exception) {
    throw CliError(OB_ExceptionOccured, "can't convert: " + exception.Text()->ToStdString());
}

}

std::string ConvertCommand::Summary() const
{
    return "Reads spectra from a CGATS file (SPEC_380 … SPEC_730 or nm380 … nm730 columns, any number of tables),\n"
           "a CSV file with such a header row, or JSON objects with a \"spectrum\" array, and writes each with its\n"
           "CIEXYZ, CIELab, density and, given a reference, ΔE. Only 380 to 730 nm in 10 nm steps is taken.\n"
           "Needs no instrument; reads and writes as it goes, so files of any length convert.";
}

std::string ConvertCommand::Examples() const
{
    return "  orbel convert --input chart.cgats --illuminant D50 --format cgats > chart-lab.cgats\n"
           "  orbel convert --input prints.csv --reference proof.txt --delta-e 94\n"
           "  orbel convert --input - --format json < measured.json\n";
}

std::vector<OptionSpec> ConvertCommand::Options() const
{
    return {
        {"--input", true, "FILE", "the spectra (CGATS, CSV or JSON; - for standard input)"},
        {"--reference", true, "FILE", "ΔE against the first spectrum of this file"},
        {"--delta-e", true, "FORMULA", "CIELab or CIE76 (default), CIEDE2000, CIE94 or 94, CMC, CIELuv, LABmg, FMCII"},
        {"--illuminant", true, "NAME", "A, C, D50, D55, D65, D75, F2, F7, F11 ..."},
        {"--observer", true, "NAME", "TwoDegree or TenDegree"},
        {"--substrate", true, "FILE", "the paper white, for densities (see orbel substrate)"},
        {"--density-standard", true, "NAME", "DIN, DINNB, ANSIA, ANSIT, SPI"},
        {"--format", true, "FORMAT", "csv (default), cgats (CGATS.17) or json"},
    };
}

int ConvertCommand::Run(const Arguments& arguments, std::ostream& out, std::ostream&)
{
    const auto input = arguments.Get("--input");
    if (!input) {
        throw CliError::Usage("convert needs --input FILE");
    }
    const std::string format = arguments.Get("--format").value_or("csv");
    if (format != "csv" && format != "cgats" && format != "json") {
        throw CliError::Usage("--format takes csv, cgats or json, not '" + format + "'");
    }
    const CMetry::HvMeasureConditions conditions = ConditionsFrom(arguments);
    const std::optional<Spectrum> reference = FirstSpectrumOf(arguments.Get("--reference"));
    const std::optional<Spectrum> substrate = FirstSpectrumOf(arguments.Get("--substrate"));
    if (substrate) {
        CMetry::SetPaperWhite(CMetry::HvSpectrum(substrate->data(), conditions));
    }
    std::ifstream file;
    if (*input != "-") {
        file.open(*input);
        if (!file) {
            throw CliError(OB_InvalidArgument, "can't read the spectrum file " + *input);
        }
    }
    SpectrumReader reader(*input == "-" ? std::cin : file, *input);
    const CMetry::SpectrumBatch batch(conditions);
    ConvertedWriter writer(out, format, substrate.has_value(), reference.has_value());
    Block block;
    // The first block is read before anything is written, so that a file refused at once leaves no output.
    bool more = ReadBlock(reader, block);
    writer.Begin(conditions);
    for (;;) {
        Convert(batch, substrate.has_value(), reference, block);
        writer.Write(block);
        if (!more) {
            break;
        }
        more = ReadBlock(reader, block);
    }
    writer.End();
    return 0;
}

}
