#include "tools/ConvertCommand.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iostream>
#include <optional>

#include "cmetry/ColorRendering.h"
#include "cmetry/ConditionKey.h"
#include "cmetry/PaperWhite.h"
#include "cmetry/SpectrumBatch.h"
#include "orbel.h"
#include "tools/CliError.h"
#include "tools/ConvertedWriter.h"
#include "tools/DeltaE.h"
#include "tools/SpectrumFile.h"
#include "tools/SpectrumReader.h"
#include "utilities/Exception.h"

namespace OrbelCli {

namespace {

// Large enough for the batch path to run at full speed, small enough to stay in the cache.
constexpr std::size_t blockSpectra = 4096;

const DeltaE::Formula& FormulaOf(const Arguments& arguments)
{
    const std::string name = arguments.Value("--delta-e", "CIELab");
    const DeltaE::Formula* formula = DeltaE::Find(name);
    if (!formula) {
        throw CliError::Usage("--delta-e doesn't know '" + name + "'");
    }
    return *formula;
}

CMetry::HvMeasureConditions ConditionsFrom(const Arguments& arguments)
{
    const std::pair<const char*, const char*> settings[] = {
        {"--illuminant", CMetry::ConditionKey::illumination},
        {"--observer", CMetry::ConditionKey::observer},
        {"--density-standard", CMetry::ConditionKey::densityStandard},
        {"--colour-space", CMetry::ConditionKey::colorSpace},
    };
    CMetry::HvMeasureConditions conditions;
    // Lights are measured absolutely: Y is their luminance or illuminance.
    if (arguments.Has("--light")) {
        conditions.SetCondition(CMetry::ConditionKey::illumination, "Emission");
    }
    for (const auto& [option, key] : settings) {
        if (const auto value = arguments.Get(option)) {
            try {
                conditions.SetCondition(key, value->c_str());
            } catch (const Utilities::Exception&) {
                throw CliError::Usage(std::string(option) + " doesn't know '" + *value + "'");
            }
        }
    }
    conditions.SetCondition(CMetry::ConditionKey::deltaEFormula, FormulaOf(arguments).moduleName);
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

struct Wanted {
    ConvertedWriter::Columns columns;
    std::optional<Spectrum> reference;
    std::array<float, 3> parameters;
};

void RenderingOf(Block& block)
{
    block.light.clear();
    CMetry::EmissionWeights::Values light;
    for (std::size_t first = 0; first < block.spectra.size(); first += light.size()) {
        std::copy_n(block.spectra.begin() + static_cast<std::ptrdiff_t>(first), light.size(), light.begin());
        block.light.push_back(CMetry::ColorRendering::Of(light));
    }
}

void Convert(const CMetry::SpectrumBatch& batch, const Wanted& wanted, Block& block)
try {
    const std::size_t count = block.names.size();
    block.xyz.resize(3 * count);
    block.lab.resize(3 * count);
    batch.GetXYZ(block.spectra, block.xyz);
    batch.GetLab(block.spectra, block.lab);
    if (wanted.columns.colourSpace) {
        block.chosen.resize(3 * count);
        batch.GetVectors(block.spectra, block.chosen);
    }
    if (wanted.columns.density) {
        block.density.resize(count);
        batch.GetDensities(block.spectra, block.density);
    }
    if (wanted.reference) {
        block.deltaE.resize(count);
        batch.GetDeltaE(wanted.reference->data(), block.spectra, block.deltaE, wanted.parameters);
    }
    if (wanted.columns.light) {
        RenderingOf(block);
    }
} catch (const Utilities::Exception& exception) {
    throw CliError(OB_ExceptionOccured, "can't convert: " + exception.Text()->ToStdString());
}

}

std::string ConvertCommand::Summary() const
{
    return "Reads spectra from a CGATS file (SPEC_380 … SPEC_730 or nm380 … nm730 columns, any number of tables),\n"
           "a CSV file with such a header row, or JSON objects with a \"spectrum\" array, and writes each with its\n"
           "CIEXYZ, CIELab, density and, given a reference, ΔE; with --colour-space also in that space, and with\n"
           "--light as a light: Y, correlated colour temperature, Duv, Ra and R1 to R14. Only 380 to 730 nm in\n"
           "10 nm steps is taken.\n"
           "Needs no instrument; reads and writes as it goes, so files of any length convert.";
}

std::string ConvertCommand::Examples() const
{
    return "  orbel convert --input chart.cgats --illuminant D50 --format cgats > chart-lab.cgats\n"
           "  orbel convert --input prints.csv --reference proof.txt --delta-e 94\n"
           "  orbel convert --input - --format json < measured.json\n"
           "  orbel convert --input lamps.csv --light --colour-space CIExyY\n";
}

std::vector<OptionSpec> ConvertCommand::Options() const
{
    return {
        {"--input", true, "FILE", "the spectra (CGATS, CSV or JSON; - for standard input)"},
        {"--reference", true, "FILE", "ΔE against the first spectrum of this file"},
        {"--delta-e", true, "FORMULA",
            "CIELab or CIE76 (default), CIEDE2000, CIE94 or 94, CMC (2:1), CIELuv, LABmg, FMCII"},
        {"--colour-space", true, "NAME", "also write CIELCh, CIELuv, CIExyY, HunterLab, LABmg, RGB ..."},
        {"--light", false, "", "the spectra are lights: the illuminant Emission, CCT, Duv, Ra, R1 to R14"},
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
    const Wanted wanted{
        {substrate.has_value(), reference.has_value(), arguments.Get("--colour-space"), arguments.Has("--light")},
        reference, FormulaOf(arguments).parameters};
    ConvertedWriter writer(out, format, wanted.columns);
    Block block;
    // The first block is read before anything is written, so that a file refused at once leaves no output.
    bool more = ReadBlock(reader, block);
    writer.Begin(conditions);
    for (;;) {
        Convert(batch, wanted, block);
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
