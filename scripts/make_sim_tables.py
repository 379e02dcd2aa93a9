#!/usr/bin/env python3
"""Writes sim/SpectralTables.cpp: the spectra of the virtual instrument's built-in targets.

Sources are the CIE data of Debian's colord-data (/usr/share/colord): the test colour samples,
illuminants A, D65 and F11, and the CIE 1931 2-degree observer. Everything is brought to the
36 wavelengths 380..730 nm in steps of 10 nm. Reflectances are taken at the 10 nm points; light
sources are averaged over each 10 nm band, so that a line spectrum keeps its energy.

Displays and lights are given absolute radiances in mW/(sr m^2 nm), so that Y = 6.83 * sum(ybar * L)
is the luminance in cd/m^2. A light is stored as the radiance that a white diffuser under it shows,
E / pi; the ambient-light factor pi gives the irradiance back.

The built-in strips are checked here: neighbouring patches differ by at least CIELab dE 15.

Usage: scripts/make_sim_tables.py [colord-dir] > sim/SpectralTables.cpp
"""
import math
import sys

COLORD = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/colord"
WAVELENGTHS = list(range(380, 731, 10))
MIN_NEIGHBOUR_DE = 15.0


def read_cgats(path):
    start = None
    step = None
    rows = []
    in_data = False
    bands = None
    for line in open(path, encoding="ascii"):
        fields = line.split()
        if not fields:
            continue
        if fields[0] == "SPECTRAL_START_NM":
            start = float(fields[1])
        elif fields[0] == "SPECTRAL_END_NM":
            end = float(fields[1])
        elif fields[0] == "SPECTRAL_BANDS":
            bands = int(fields[1])
        elif fields[0] == "BEGIN_DATA":
            in_data = True
        elif fields[0] == "END_DATA":
            in_data = False
        elif in_data:
            rows.append(fields)
    step = (end - start) / (bands - 1)
    return start, step, rows


def value_at(start, step, values, nm):
    position = (nm - start) / step
    index = int(math.floor(position))
    if index < 0:
        return values[0]
    if index >= len(values) - 1:
        return values[-1]
    fraction = position - index
    return values[index] * (1 - fraction) + values[index + 1] * fraction


def sampled(start, step, values):
    return [value_at(start, step, values, nm) for nm in WAVELENGTHS]


def band_averaged(start, step, values):
    result = []
    for nm in WAVELENGTHS:
        total = 0.0
        weight_sum = 0.0
        for offset in range(-5, 6):
            weight = 1.0 - abs(offset) / 10.0
            total += weight * value_at(start, step, values, nm + offset)
            weight_sum += weight
        result.append(total / weight_sum)
    return result


def test_colour_samples():
    start, step, rows = read_cgats(COLORD + "/ref/CIE-TCS.sp")
    samples = {}
    for row in rows:
        name = row[0].lower()
        number = int(name[3:])
        if 1 <= number <= 14:
            samples["tcs%02d" % number] = sampled(start, step, [float(v) for v in row[1:]])
    return samples


def illuminant(name):
    start, step, rows = read_cgats(COLORD + "/illuminant/CIE-%s.sp" % name)
    return band_averaged(start, step, [float(v) for v in rows[0]])


def observer():
    start, step, rows = read_cgats(COLORD + "/cmf/CIE1931-2deg-XYZ.cmf")
    return [sampled(start, step, [float(v) for v in row]) for row in rows]


CMF = observer()
D65 = illuminant("D65")


def luminance(radiance):
    return 6.83 * sum(y * l for y, l in zip(CMF[1], radiance))


def tristimulus_of_radiance(radiance):
    return [6.83 * sum(c * l for c, l in zip(cmf, radiance)) for cmf in CMF]


def lab(reflectance):
    norm = 100.0 / sum(y * s for y, s in zip(CMF[1], D65))
    xyz = [norm * sum(c * s * r for c, s, r in zip(cmf, D65, reflectance)) for cmf in CMF]
    white = [norm * sum(c * s for c, s in zip(cmf, D65)) for cmf in CMF]

    def f(t):
        return t ** (1 / 3) if t > 216 / 24389 else (24389 / 27 * t + 16) / 116

    fx, fy, fz = (f(v / w) for v, w in zip(xyz, white))
    return (116 * fy - 16, 500 * (fx - fy), 200 * (fy - fz))


def delta_e(a, b):
    return math.dist(lab(a), lab(b))


def curve(function):
    return [function(nm) for nm in WAVELENGTHS]


def sigmoid(x):
    return 1.0 / (1.0 + math.exp(-x))


INKS = {
    "cyan": curve(lambda nm: 0.05 + 0.65 * sigmoid((540 - nm) / 15)),
    "magenta": curve(lambda nm: 0.05 + 0.75 * (1 - math.exp(-((nm - 545) / 45) ** 4))),
    "yellow": curve(lambda nm: 0.06 + 0.80 * sigmoid((nm - 500) / 12)),
    "red": curve(lambda nm: 0.05 + 0.80 * sigmoid((nm - 590) / 12)),
    "green": curve(lambda nm: 0.05 + 0.45 * math.exp(-((nm - 525) / 35) ** 2)),
    "blue": curve(lambda nm: 0.05 + 0.50 * math.exp(-((nm - 450) / 35) ** 2)),
    "black": curve(lambda nm: 0.03),
}
PAPER = curve(lambda nm: 0.80 + 0.08 * sigmoid((nm - 420) / 12))
GREYS = {"grey%d" % level: curve(lambda nm, level=level: level / 100.0) for level in range(10, 100, 10)}


def gaussian(centre, width):
    return curve(lambda nm: math.exp(-0.5 * ((nm - centre) / width) ** 2))


def solve3(matrix, vector):
    m = [row[:] + [v] for row, v in zip(matrix, vector)]
    for col in range(3):
        pivot = max(range(col, 3), key=lambda r: abs(m[r][col]))
        m[col], m[pivot] = m[pivot], m[col]
        for r in range(3):
            if r != col:
                factor = m[r][col] / m[col][col]
                m[r] = [a - factor * b for a, b in zip(m[r], m[col])]
    return [m[r][3] / m[r][r] for r in range(3)]


def displays():
    """Three primaries whose sum is a white of D65 chromaticity and 200 cd/m^2."""
    primaries = [gaussian(612, 16), gaussian(540, 22), gaussian(455, 13)]
    white_xyz = tristimulus_of_radiance(D65)
    white_xyz = [200.0 * v / white_xyz[1] for v in white_xyz]
    columns = [tristimulus_of_radiance(p) for p in primaries]
    matrix = [[columns[c][r] for c in range(3)] for r in range(3)]
    weights = solve3(matrix, white_xyz)
    scaled = [[w * v for v in p] for w, p in zip(weights, primaries)]
    white = [sum(values) for values in zip(*scaled)]
    return {"white": white, "red": scaled[0], "green": scaled[1], "blue": scaled[2]}


def light(spectrum, lux):
    scale = lux / luminance(spectrum)
    return [scale * v / math.pi for v in spectrum]


def lights():
    return {
        "a": light(illuminant("A"), 500.0),
        "daylight": light(D65, 1000.0),
        "fluorescent": light(illuminant("F11"), 250.0),
    }


def ordered_without_close_neighbours(palette, first_neighbour, last_neighbour):
    remaining = list(palette.items())
    order = []
    previous = first_neighbour
    while remaining:
        candidates = [item for item in remaining if delta_e(previous, item[1]) >= MIN_NEIGHBOUR_DE]
        if len(remaining) == 1 and delta_e(remaining[0][1], last_neighbour) < MIN_NEIGHBOUR_DE:
            candidates = []
        if not candidates:
            sys.exit("no patch left that differs enough from its neighbour")
        if len(remaining) > 1:
            safe = [c for c in candidates if delta_e(c[1], last_neighbour) >= MIN_NEIGHBOUR_DE
                    or len(remaining) > 2]
            candidates = safe or candidates
        chosen = max(candidates, key=lambda item: delta_e(previous, item[1]))
        order.append(chosen)
        remaining.remove(chosen)
        previous = chosen[1]
    return order


def strip(patches, width, margin):
    layout = [("paper", margin, PAPER)] + [(name, width, values) for name, values in patches]
    layout.append(("paper", margin, PAPER))
    for (name_a, _, a), (name_b, _, b) in zip(layout, layout[1:]):
        if delta_e(a, b) < MIN_NEIGHBOUR_DE:
            sys.exit("strip neighbours %s and %s differ by less than dE %.1f" % (name_a, name_b, MIN_NEIGHBOUR_DE))
    return layout


def strips(samples):
    colour_palette = dict(samples)
    colour_palette.update(INKS)
    colour_palette.update({k: GREYS[k] for k in ("grey20", "grey40", "grey60")})
    colour = ordered_without_close_neighbours(colour_palette, PAPER, PAPER)[:24]
    grey_order = ["grey10", "grey50", "grey80", "grey40", "grey70", "grey30", "grey60", "grey20"]
    primaries = ["cyan", "magenta", "yellow", "black", "red", "green", "blue"]
    return {
        "colour24": strip(colour, 10.0, 15.0),
        "grey8": strip([(name, GREYS[name]) for name in grey_order], 12.0, 15.0),
        "primaries7": strip([(name, INKS[name]) for name in primaries], 8.0, 12.0),
    }


def numbers(values):
    return ", ".join("%.7g" % v for v in values)


def emit_named(name, table):
    lines = ["const std::vector<NamedSpectrum>& SpectralTables::%s()" % name, "{",
             "  static const std::vector<NamedSpectrum> table = {"]
    for key, values in table.items():
        lines.append('    {"%s", {%s}},' % (key, numbers(values)))
    lines += ["  };", "  return table;", "}", ""]
    return lines


def emit_spectrum(name, values):
    return ["const Spectrum36& SpectralTables::%s()" % name, "{",
            "  static const Spectrum36 values = {%s};" % numbers(values), "  return values;", "}", ""]


def emit_strips(table):
    lines = ["const std::vector<NamedStrip>& SpectralTables::Strips()", "{",
             "  static const std::vector<NamedStrip> table = {"]
    for name, layout in table.items():
        lines.append('    {"%s", {' % name)
        for patch, width, values in layout:
            lines.append('      {"%s", %.1f, {%s}},' % (patch, width, numbers(values)))
        lines.append("    }},")
    lines += ["  };", "  return table;", "}", ""]
    return lines


def main():
    samples = test_colour_samples()
    out = ["// Generated by scripts/make_sim_tables.py from the CIE data of colord-data; do not edit.",
           '#include "sim/SpectralTables.h"', "", "namespace OrbelSim {", ""]
    out += emit_named("TestColourSamples", samples)
    out += emit_named("Displays", displays())
    out += emit_named("Lights", lights())
    out += emit_strips(strips(samples))
    out += emit_spectrum("ObserverX", CMF[0])
    out += emit_spectrum("ObserverY", CMF[1])
    out += emit_spectrum("ObserverZ", CMF[2])
    out += emit_spectrum("IlluminantD65", D65)
    out += ["}  // namespace OrbelSim"]
    print("\n".join(out))


main()
