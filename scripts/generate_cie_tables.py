#!/usr/bin/python3
"""Writes cmetry/CieTables.h and cmetry/CieTables.cpp: the published CIE tables of the colorimetry.

Sources, all from Debian packages, so that nothing is typed in by hand:
- colord-data, /usr/share/colord/illuminant/CIE-*.sp: illuminants A, B, C, D65 and F1 to F12,
  normalised to 1.0 there and scaled here by 100 as the CIE publishes them (decimal scaling, so the
  published digits stay as they are). D65 at 1 nm is the linear interpolation of its 5 nm values,
  as the CIE's 1 nm table is.
- colord-data, /usr/share/colord/ref/CIE-1986-daylight-SPD.cmf: the daylight components S0, S1, S2.
- D50, D55, D75: the daylight rule applied to S0, S1, S2 for 5000, 5500 and 7500 K, rounded to
  three decimals, as the CIE's tables are made.
- psychtoolbox-3-common, PsychColorimetricMatFiles/T_xyz1931.mat and T_xyz1964.mat: the
  colour-matching functions at 1 nm from 360 nm; z-bar is cut where it becomes zero for good
  (650 nm for 1931, 560 nm for 1964).

Needs python3-scipy (Debian) to read the MATLAB files. Run from anywhere:
    /usr/bin/python3 scripts/generate_cie_tables.py [repository-root]
"""
import math
import pathlib
import sys
from decimal import ROUND_HALF_UP, Decimal

COLORD = pathlib.Path("/usr/share/colord")
PSYCHTOOLBOX = pathlib.Path(
    "/usr/share/psychtoolbox-3/PsychColorimetricData/PsychColorimetricMatFiles")
ROOT = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parents[1]

ILLUMINANT_NAMES = ["A", "B", "C", "D75", "D65", "D55", "D50"]
DAYLIGHT_TEMPERATURES = {"D75": 7500, "D55": 5500, "D50": 5000}
Z_BAR_END = {"T_xyz1931": 650, "T_xyz1964": 560}
LINE_WIDTH = 110


class Table:
    """One equally spaced table: decimal texts of its values, and where they came from."""

    def __init__(self, title, symbol, minimum, step, values, source):
        self.title = title
        self.symbol = symbol
        self.minimum = minimum
        self.step = step
        self.values = values
        self.source = source

    @property
    def maximum(self):
        return self.minimum + self.step * (len(self.values) - 1)


def read_cgats(path):
    """The start, step and data sets of a colord spectral file, values as Decimal."""
    header = {}
    sets = []
    in_data = False
    for line in path.read_text(encoding="ascii").splitlines():
        fields = line.split()
        if not fields:
            continue
        if fields[0] == "BEGIN_DATA":
            in_data = True
        elif fields[0] == "END_DATA":
            in_data = False
        elif in_data:
            labelled = fields[0][0].isalpha()  # a SAMPLE_ID before the values
            sets.append([Decimal(field) for field in fields[labelled:]])
        elif len(fields) == 2:
            header[fields[0]] = fields[1]
    start = int(float(header["SPECTRAL_START_NM"]))
    end = int(float(header["SPECTRAL_END_NM"]))
    bands = int(header["SPECTRAL_BANDS"])
    for values in sets:
        if len(values) != bands:
            raise SystemExit(f"{path}: {len(values)} values where {bands} are announced")
    step = (end - start) // (bands - 1)
    if start + step * (bands - 1) != end:
        raise SystemExit(f"{path}: {bands} bands do not fit {start} to {end} nm")
    return start, step, sets


def colord_illuminant(name):
    """A colord illuminant, brought to the CIE's scale of 100."""
    path = COLORD / "illuminant" / f"CIE-{name}.sp"
    start, step, sets = read_cgats(path)
    return start, step, [value * 100 for value in sets[0]], f"{path.name} times 100"


def linear_to_1nm(start, step, values):
    result = []
    for left, right in zip(values, values[1:]):
        result.extend(left + (right - left) * i / step for i in range(step))
    result.append(values[-1])
    return start, 1, result


def daylight_coefficients(temperature):
    """M1 and M2 of the daylight rule, rounded to three decimals."""
    t = temperature * 1.4388 / 1.438
    if t < 7000:
        x = -4.607e9 / t**3 + 2.9678e6 / t**2 + 99.11 / t + 0.244063
    else:
        x = -2.0064e9 / t**3 + 1.9018e6 / t**2 + 247.48 / t + 0.23704
    y = -3.0 * x * x + 2.87 * x - 0.275
    m = 0.0241 + 0.2562 * x - 0.7341 * y
    m1 = (-1.3515 - 1.7703 * x + 5.9114 * y) / m
    m2 = (0.03 - 31.4424 * x + 30.0717 * y) / m
    return (Decimal(math.floor(m1 * 1000 + 0.5)) / 1000, Decimal(math.floor(m2 * 1000 + 0.5)) / 1000)


def daylight(temperature, start, step, components):
    """The daylight rule in exact decimals, scaled to 100 at 560 nm, rounded to three decimals."""
    m1, m2 = daylight_coefficients(temperature)
    s0, s1, s2 = components
    spd = [a + m1 * b + m2 * c for a, b, c in zip(s0, s1, s2)]
    scale = Decimal(100) / spd[(560 - start) // step]
    return [(value * scale).quantize(Decimal("0.001"), rounding=ROUND_HALF_UP) for value in spd]


def illuminant_tables():
    daylight_path = COLORD / "ref" / "CIE-1986-daylight-SPD.cmf"
    s_start, s_step, components = read_cgats(daylight_path)
    tables = {}
    for name in ("A", "B", "C"):
        start, step, values, source = colord_illuminant(name)
        tables[name] = Table(f"CIE illuminant {name}", f"kIlluminant{name}", start, step, values,
                             source)
    start, step, values, source = colord_illuminant("D65")
    start, step, values = linear_to_1nm(start, step, values)
    tables["D65"] = Table("CIE illuminant D65", "kIlluminantD65", start, step, values,
                          source + ", linear from 5 nm to 1 nm")
    for name, temperature in DAYLIGHT_TEMPERATURES.items():
        m1, m2 = daylight_coefficients(temperature)
        tables[name] = Table(f"CIE illuminant {name}", f"kIlluminant{name}", s_start, s_step,
                             daylight(temperature, s_start, s_step, components),
                             f"daylight rule for {temperature} K, M1 {m1}, M2 {m2}, to 3 decimals")
    illuminants = [tables[name] for name in ILLUMINANT_NAMES]
    components = [Table(f"CIE daylight component S{i}", f"kDaylightS{i}", s_start, s_step, values,
                        daylight_path.name) for i, values in enumerate(components)]
    return illuminants, components


def fluorescent_tables():
    tables = []
    for number in range(1, 13):
        start, step, values, source = colord_illuminant(f"F{number}")
        tables.append(Table(f"CIE illuminant F{number}", f"kFluorescentF{number}", start, step,
                            values, source))
    return tables


def observer_tables(name):
    import scipy.io  # only here, so that other generators can share the helpers without it

    path = PSYCHTOOLBOX / f"{name}.mat"
    data = scipy.io.loadmat(str(path))
    start, step, count = (int(v) for v in data["S_" + name[2:]].ravel())
    functions = data[name]
    tables = []
    for axis, letter in enumerate("xyz"):
        values = [Decimal(repr(float(v))) for v in functions[axis][:count]]
        if letter == "z":
            end = Z_BAR_END[name]
            if any(v != 0 for v in values[(end - start) // step:]):
                raise SystemExit(f"{path}: z-bar is not zero from {end} nm on")
            values = values[:(end - start) // step + 1]
        tables.append(Table(f"CIE {name[5:]} {letter}-bar", f"k{name[2:].capitalize()}{letter.upper()}Bar",
                            start, step, values, f"{path.name} row {axis + 1}"))
    return tables


def literal(value):
    small = value != 0 and abs(value) < Decimal("1e-3")
    text = format(value.normalize(), "e" if small else "f")
    if "." not in text and "e" not in text:
        text += ".0"
    return text + "f"


def array_definition(table):
    literals = [literal(value) for value in table.values]
    lines = [f"// {table.title}, {table.minimum} to {table.maximum} nm in steps of {table.step} nm: "
             f"{table.source}",
             f"constexpr float {table.symbol}[{len(literals)}] = {{"]
    line = "   "
    for text in literals:
        if len(line) + len(text) + 2 > LINE_WIDTH:
            lines.append(line)
            line = "   "
        line += f" {text},"
    lines.append(line)
    lines.append("};")
    return "\n".join(lines)


def table_initialiser(table):
    return f"{{{table.minimum}, {table.maximum}, {table.step}, {table.symbol}}}"


GENERATED_NOTE = """\
// Generated by scripts/generate_cie_tables.py from the Debian packages colord-data and
// psychtoolbox-3-common; do not edit by hand, change the script and run it again."""

SOURCES_NOTE = f"""\
// Sources: the illuminants of colord-data in {COLORD}/illuminant (normalised to 1 there,
// scaled by 100 here), its daylight components in {COLORD}/ref, and the colour-matching
// functions of psychtoolbox-3-common in
// {PSYCHTOOLBOX}."""

HEADER = GENERATED_NOTE + """
#pragma once

#include <cstdint>
#include <span>

namespace CMetry {

// The published CIE tables that the colorimetry starts from. Each table is a run of equally spaced
// values from its minimum to its maximum wavelength; beyond its ends a table holds no entries.
class CieTables {
public:
    struct Table {
        std::uint16_t minimum;  // nm of the first entry
        std::uint16_t maximum;  // nm of the last entry
        std::uint16_t step;     // nm between entries
        std::span<const float> values;
    };

    // Indexed by the Illumination number: 0 A, 1 B, 2 C, 3 D75, 4 D65, 5 D55, 6 D50.
    // A and D65 at 1 nm, the others at 5 nm; A, the D series and S0 are 100 at 560 nm.
    static const Table Illuminant[7];
    // F1 to F12, indexed by the F value - 1; F2, F7 and F11 are rows 1, 6 and 10.
    static const Table Fluorescent[12];
    // The daylight components S0, S1, S2.
    static const Table Daylight[3];
    // Indexed by the Observer number (0 two degrees of 1931, 1 ten degrees of 1964), then by the
    // axis (x-bar, y-bar, z-bar). All at 1 nm from 360 nm; z-bar ends where it becomes zero.
    static const Table Observer[2][3];
};

}
"""


def source_text(illuminants, fluorescents, components, observers):
    arrays = [array_definition(t) for t in illuminants + fluorescents + components + observers]
    def initialisers(tables, indent):
        return ",\n".join(indent + table_initialiser(t) for t in tables)
    return f"""{GENERATED_NOTE}
{SOURCES_NOTE}
#include "cmetry/CieTables.h"

namespace CMetry {{

namespace {{

{chr(10).join(arrays)}

}}

constinit const CieTables::Table CieTables::Illuminant[7] = {{
{initialisers(illuminants, "    ")},
}};

constinit const CieTables::Table CieTables::Fluorescent[12] = {{
{initialisers(fluorescents, "    ")},
}};

constinit const CieTables::Table CieTables::Daylight[3] = {{
{initialisers(components, "    ")},
}};

constinit const CieTables::Table CieTables::Observer[2][3] = {{
    {{
{initialisers(observers[:3], "        ")},
    }},
    {{
{initialisers(observers[3:], "        ")},
    }},
}};

}}
"""


def main():
    illuminants, components = illuminant_tables()
    fluorescents = fluorescent_tables()
    observers = observer_tables("T_xyz1931") + observer_tables("T_xyz1964")
    (ROOT / "cmetry" / "CieTables.h").write_text(HEADER, encoding="ascii")
    (ROOT / "cmetry" / "CieTables.cpp").write_text(
        source_text(illuminants, fluorescents, components, observers), encoding="ascii")


if __name__ == "__main__":
    main()
