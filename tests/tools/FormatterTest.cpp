#include <locale>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/tools/CgatsReader.h"
#include "tests/tools/JsonReader.h"
#include "tools/CgatsFormatter.h"
#include "tools/ReportFormatter.h"
#include "tools/SvgPlot.h"
#include "tools/TableFormatter.h"

using namespace OrbelCli;
using OrbelCliTest::CgatsReader;
using OrbelCliTest::JsonReader;

namespace {

MeasurementReport TwoSamples()
{
    MeasurementReport report{
        "SingleReflectance", "D65", "TwoDegree", "CIELCh", {}, {{"note \"x\"", "1,5 & <b>"}}, "UVCut", "M2"};
    for (int s = 0; s < 2; ++s) {
        Sample sample;
        sample.id = s == 0 ? "tcs 09" : "tcs12";
        for (int i = 0; i < SpectrumPoints; ++i) {
            sample.spectrum[i] = 0.05f + 0.0234567f * i * (s + 1) / 3.0f;
        }
        sample.xyz = Triple{41.2346f, 35.7f, 1234.5f};
        sample.lab = Triple{66.123f, -12.5f, 0.001f};
        sample.densities = Densities{{1.2345f, 0.5f, 0.25f, 1.5f}, "cyan"};
        sample.chosen = Triple{66.1f, 12.6f, 270.0f};
        report.samples.push_back(sample);
    }
    return report;
}

std::string Written(const std::string& format, const MeasurementReport& report)
{
    std::ostringstream out;
    if (format == "cgats") {
        CgatsFormatter("2026-11-23T07:00:00Z").Write(out, report);
    } else {
        ReportFormatter::Create(format)->Write(out, report);
    }
    return out.str();
}

// A decimal comma and thousands grouping, the numeric habits the output must not pick up.
struct CommaNumbers : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

// Well-formed XML as far as the plot uses it: tags nest and close, attributes are quoted, text
// holds no bare '<' or '&'.
bool WellFormed(const std::string& xml)
{
    std::vector<std::string> open;
    const std::regex tag(R"(<(/?)([A-Za-z][\w:-]*)((?:\s+[\w:-]+="[^"<]*")*)\s*(/?)>|<\?xml[^>]*\?>)");
    std::size_t position = 0;
    for (std::sregex_iterator it(xml.begin(), xml.end(), tag), end; it != end; ++it) {
        const std::string between = xml.substr(position, it->position() - position);
        if (between.find('<') != std::string::npos ||
            std::regex_search(between, std::regex("&(?!amp;|lt;|gt;|quot;)"))) {
            return false;
        }
        position = it->position() + it->length();
        if ((*it)[2].length() == 0) {
            continue;
        }
        if ((*it)[1] == "/") {
            if (open.empty() || open.back() != (*it)[2]) {
                return false;
            }
            open.pop_back();
        } else if ((*it)[4] != "/") {
            open.push_back((*it)[2]);
        }
    }
    return open.empty() && xml.find('<', position) == std::string::npos;
}

}

TEST(FormatterTest, JsonParsesAndHoldsTheExactFloats)
{
    const MeasurementReport report = TwoSamples();
    const auto json = JsonReader::Parse(Written("json", report));

    EXPECT_EQ(json["mode"].Text(), "SingleReflectance");
    EXPECT_EQ(json["notes"]["note \"x\""].Text(), "1,5 & <b>");
    EXPECT_EQ(json["filter"].Text(), "UVCut");
    EXPECT_EQ(json["measurementCondition"].Text(), "M2");
    ASSERT_EQ(json["samples"].Size(), 2u);
    const auto& second = json["samples"][1];
    EXPECT_EQ(second["id"].Text(), "tcs12");
    ASSERT_EQ(second["spectrum"].Size(), 36u);
    for (std::size_t i = 0; i < 36; ++i) {
        EXPECT_EQ(static_cast<float>(second["spectrum"][i].Number()), report.samples[1].spectrum[i]);
    }
    EXPECT_EQ(static_cast<float>(second["xyz"][2].Number()), 1234.5f);
    EXPECT_EQ(static_cast<float>(second["lab"][0].Number()), 66.123f);
    EXPECT_EQ(static_cast<float>(second["densities"]["cyan"].Number()), 1.2345f);
    EXPECT_EQ(second["densities"]["auto"].Text(), "cyan");
    EXPECT_EQ(second["colour"].Size(), 3u);

    MeasurementReport empty = report;
    empty.samples.clear();
    EXPECT_EQ(JsonReader::Parse(Written("json", empty))["samples"].Size(), 0u);
}

TEST(FormatterTest, CgatsReadsBackWithHeaderFieldsAndSets)
{
    const auto cgats = CgatsReader::Read(Written("cgats", TwoSamples()));

    EXPECT_EQ(cgats.signature, "CGATS.17");
    EXPECT_EQ(cgats.keywords.at("ORIGINATOR"), "orbel");
    EXPECT_EQ(cgats.keywords.at("CREATED"), "2026-11-23T07:00:00Z");
    EXPECT_EQ(
        cgats.keywords.at("MEASUREMENT_SOURCE"), "Illumination=D65 ObserverAngle=TwoDegree MeasurementCondition=M2");
    EXPECT_EQ(cgats.keywords.at("FILTER"), "UVCut");
    EXPECT_EQ(cgats.keywords.at("NUMBER_OF_FIELDS"), "50");
    ASSERT_EQ(cgats.fields.size(), 50u);
    EXPECT_EQ(cgats.fields.front(), "SAMPLE_ID");
    EXPECT_EQ(cgats.fields[1], "SPEC_380");
    EXPECT_EQ(cgats.fields[36], "SPEC_730");
    EXPECT_EQ(cgats.fields[37], "XYZ_X");
    EXPECT_EQ(cgats.fields[40], "LAB_L");
    EXPECT_EQ(cgats.fields[46], "D_VIS");
    EXPECT_EQ(cgats.fields.back(), "CIELCH_3");
    ASSERT_EQ(cgats.sets.size(), 2u);
    EXPECT_EQ(cgats.Text(0, "SAMPLE_ID"), "tcs 09");
    EXPECT_NEAR(cgats.Number(1, "SPEC_730"), 0.05 + 0.0234567 * 35 * 2 / 3.0, 1e-5);
    EXPECT_DOUBLE_EQ(cgats.Number(0, "XYZ_X"), 41.2346);
    EXPECT_DOUBLE_EQ(cgats.Number(0, "LAB_B"), 0.001);
    EXPECT_DOUBLE_EQ(cgats.Number(1, "D_RED"), 1.235);

    MeasurementReport broken = TwoSamples();
    broken.samples[0].id = "two\nlines\r";
    const auto kept = CgatsReader::Read(Written("cgats", broken));
    ASSERT_EQ(kept.sets.size(), 2u);
    EXPECT_EQ(kept.Text(0, "SAMPLE_ID"), "two lines ");
}

TEST(FormatterTest, CgatsAndCsvLeaveOutWhatNotEverySampleHas)
{
    MeasurementReport report = TwoSamples();
    report.samples[1].densities.reset();
    report.colourSpace = "CIELab";
    for (Sample& sample : report.samples) {
        sample.chosen.reset();
    }
    const auto cgats = CgatsReader::Read(Written("cgats", report));
    EXPECT_EQ(cgats.fields.size(), 43u);
    EXPECT_EQ(cgats.fields.back(), "LAB_B");

    const std::string csv = Written("csv", report);
    EXPECT_EQ(csv.substr(0, csv.find('\n')).find("D_VIS"), std::string::npos);
    EXPECT_NE(csv.find("\ntcs 09,0.05000,"), std::string::npos);
}

TEST(FormatterTest, OutputIgnoresTheLocale)
{
    const MeasurementReport report = TwoSamples();
    std::vector<std::string> plain;
    for (const char* format : {"table", "csv", "json", "cgats"}) {
        plain.push_back(Written(format, report));
    }
    std::ostringstream svgPlain;
    SvgPlot("t", "v").Write(svgPlain);

    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
    std::vector<std::string> localised;
    for (const char* format : {"table", "csv", "json", "cgats"}) {
        localised.push_back(Written(format, report));
    }
    std::ostringstream svgLocalised;
    SvgPlot("t", "v").Write(svgLocalised);
    std::locale::global(previous);

    EXPECT_EQ(plain, localised);
    EXPECT_EQ(svgPlain.str(), svgLocalised.str());
    EXPECT_NE(plain[3].find("NUMBER_OF_FIELDS\t50"), std::string::npos);
}

TEST(FormatterTest, TableAlignsColumnsAndListsSpectraWhileTheyFit)
{
    const std::string table = Written("table", TwoSamples());
    std::istringstream lines(table);
    std::string line;
    std::vector<std::string> rows;
    while (std::getline(lines, line)) {
        rows.push_back(line);
    }
    ASSERT_GT(rows.size(), 5u);
    EXPECT_EQ(rows[0], "SingleReflectance, illuminant D65, observer TwoDegree, 2 samples");
    EXPECT_EQ(rows[2].find("a*") + 2, rows[4].find("-12.50") + 6) << table;
    EXPECT_NE(table.find("  380  0.0500  0.0500"), std::string::npos) << table;
    EXPECT_NE(table.find("note \"x\": 1,5 & <b>"), std::string::npos);

    MeasurementReport many = TwoSamples();
    many.samples.resize(TableFormatter::MaxSpectrumColumns + 1, many.samples.front());
    EXPECT_NE(Written("table", many).find("--plot draws them"), std::string::npos);
}

TEST(FormatterTest, UnknownFormatHasNoFormatter)
{
    EXPECT_EQ(ReportFormatter::Create("xml"), nullptr);
    EXPECT_EQ(ReportFormatter::Create("JSON"), nullptr);
}

TEST(SvgPlotTest, PictureIsWellFormedWithAxesLegendAndOneLinePerSpectrum)
{
    SvgPlot plot("Spectra <&>", "reflectance factor");
    const MeasurementReport report = TwoSamples();
    for (const Sample& sample : report.samples) {
        plot.Add(sample.id, sample.spectrum);
    }
    std::ostringstream out;
    plot.Write(out);
    const std::string svg = out.str();

    EXPECT_TRUE(WellFormed(svg)) << svg;
    EXPECT_TRUE(svg.rfind("<?xml", 0) == 0);
    EXPECT_NE(svg.find("Spectra &lt;&amp;&gt;"), std::string::npos);
    EXPECT_NE(svg.find(">380</text>"), std::string::npos);
    EXPECT_NE(svg.find(">730</text>"), std::string::npos);
    EXPECT_NE(svg.find("wavelength (nm)"), std::string::npos);
    EXPECT_NE(svg.find(">tcs 09</text>"), std::string::npos);
    const std::regex polyline("<polyline");
    EXPECT_EQ(std::distance(std::sregex_iterator(svg.begin(), svg.end(), polyline), std::sregex_iterator()), 2);
    EXPECT_FALSE(WellFormed("<svg><g></svg></g>"));
    EXPECT_FALSE(WellFormed("<svg><text>a & b</text></svg>"));
}
