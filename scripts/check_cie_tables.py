#!/usr/bin/python3
"""Checks the generated cmetry/CieTables.cpp on its own, without the generator's code.

- every table holds as many values as its range and step call for;
- the tables agree with the second copies that psychtoolbox-3-common ships (A, C, D65 and the
  daylight components at 5 nm from 380 to 780 nm);
- the daylight rule, computed here in plain floating point, against colord's D65 table and
  against the generated D50, D55 and D75;
- the white points of the perfect diffuser, summed at 1 nm over 360 to 780 nm with the 5 nm
  illuminants brought to 1 nm by Lagrange polynomials (quadratic in the first and last interval,
  cubic elsewhere), from the float32 values that the C++ compiler will see.

Usage: /usr/bin/python3 scripts/check_cie_tables.py [repository-root]; exit status 1 on a failure.
"""
import math
import pathlib
import re
import sys

import numpy as np
import scipy.io

ROOT = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parents[1]
COLORD_D65 = pathlib.Path("/usr/share/colord/illuminant/CIE-D65.sp")
PSYCHTOOLBOX = pathlib.Path(
    "/usr/share/psychtoolbox-3/PsychColorimetricData/PsychColorimetricMatFiles")
ILLUMINANTS = ["A", "B", "C", "D75", "D65", "D55", "D50"]
CALCULATION = np.arange(360, 781)

# X, Y, Z of the perfect diffuser that the colorimetry must reproduce, to two decimals.
WHITE_POINTS = {("D65", 0): (95.05, 100.00, 108.88), ("D50", 0): (96.42, 100.00, 82.52),
                ("A", 0): (109.85, 100.00, 35.59), ("D65", 1): (94.81, 100.00, 107.30)}

# What storing a value up to a few hundred as a 32-bit float may change.
FLOAT_SLACK = 5e-5

failures = []


def check(condition, text):
    print(("ok    " if condition else "FAIL  ") + text)
    if not condition:
        failures.append(text)


class Table:
    def __init__(self, minimum, maximum, step, values):
        self.minimum, self.maximum, self.step = minimum, maximum, step
        self.values = np.array(values, dtype=np.float32).astype(np.float64)

    def at(self, wavelengths):
        """Values at wavelengths on the table's grid; 0 beyond its ends."""
        result = np.zeros(len(wavelengths))
        for i, wavelength in enumerate(wavelengths):
            if self.minimum <= wavelength <= self.maximum:
                result[i] = self.values[(wavelength - self.minimum) // self.step]
        return result


def parse_generated(path):
    text = path.read_text(encoding="ascii")
    arrays = {}
    for name, count, body in re.findall(r"constexpr float (\w+)\[(\d+)\] = \{(.*?)\};", text, re.S):
        values = [float(v.rstrip("f")) for v in body.replace("\n", " ").split(",") if v.strip()]
        check(len(values) == int(count), f"{name} holds the {count} values it declares")
        arrays[name] = values
    tables = {}
    for group, body in re.findall(r"CieTables::(\w+)\[[\d\]\[]+ = \{(.*?)\n\};", text, re.S):
        entries = re.findall(r"\{(\d+), (\d+), (\d+), (\w+)\}", body)
        tables[group] = []
        for minimum, maximum, step, name in entries:
            minimum, maximum, step = int(minimum), int(maximum), int(step)
            check((maximum - minimum) % step == 0 and
                  (maximum - minimum) // step + 1 == len(arrays[name]),
                  f"{name}: {minimum} to {maximum} nm at {step} nm fits its {len(arrays[name])} values")
            tables[group].append(Table(minimum, maximum, step, arrays[name]))
    observers = tables.pop("Observer")
    tables["Observer"] = [observers[:3], observers[3:]]
    return tables


def read_colord(path):
    numbers = path.read_text(encoding="ascii").split("BEGIN_DATA\n")[1].split("END_DATA")[0].split()
    start = int(float(re.search(r"SPECTRAL_START_NM\s+(\S+)", path.read_text()).group(1)))
    step = 5
    return start, step, np.array([float(v) * 100 for v in numbers])


def lagrange(nodes, values, x):
    total = 0.0
    for j, (xj, yj) in enumerate(zip(nodes, values)):
        basis = 1.0
        for m, xm in enumerate(nodes):
            if m != j:
                basis *= (x - xm) / (xj - xm)
        total += basis * yj
    return total


def to_1nm(table):
    """The illuminant at each nm of the calculation range."""
    if table.step == 1:
        return table.at(CALCULATION)
    s = table.step
    grid = np.arange(360, 781, s)
    clamped = np.clip(grid, table.minimum, table.maximum)
    nodes_values = table.at(clamped)
    last = len(grid) - 1
    result = []
    for wavelength in CALCULATION:
        k = (wavelength - 360) // s
        if wavelength == 780:
            result.append(nodes_values[last])
            continue
        first = 0 if k == 0 else (last - 2 if k == last - 1 else k - 1)
        count = 3 if k in (0, last - 1) else 4
        idx = list(range(first, first + count))
        result.append(lagrange(grid[idx], nodes_values[idx], wavelength))
    return np.array(result)


def white_point(illuminant, observer):
    spd = to_1nm(illuminant)
    bars = [axis.at(CALCULATION) for axis in observer]
    k = 100.0 / float(np.sum(spd * bars[1]))
    return k, [k * float(np.sum(spd * bar)) for bar in bars]


def daylight_rule(temperature, components):
    t = temperature * 1.4388 / 1.438
    if t < 7000:
        x = -4.607e9 / t**3 + 2.9678e6 / t**2 + 99.11 / t + 0.244063
    else:
        x = -2.0064e9 / t**3 + 1.9018e6 / t**2 + 247.48 / t + 0.23704
    y = -3.0 * x * x + 2.87 * x - 0.275
    m = 0.0241 + 0.2562 * x - 0.7341 * y
    m1 = math.floor((-1.3515 - 1.7703 * x + 5.9114 * y) / m * 1000 + 0.5) / 1000
    m2 = math.floor((0.03 - 31.4424 * x + 30.0717 * y) / m * 1000 + 0.5) / 1000
    s0, s1, s2 = (c.values for c in components)
    spd = s0 + m1 * s1 + m2 * s2
    return spd * 100 / spd[(560 - components[0].minimum) // components[0].step]


def check_second_copies(tables):
    # psychtoolbox rounds A and D65 to two decimals, C keeps the published digits.
    copies = {"spd_CIEA": ("A", tables["Illuminant"][0], 0.005 + FLOAT_SLACK),
              "spd_CIEC": ("C", tables["Illuminant"][2], FLOAT_SLACK),
              "spd_D65": ("D65", tables["Illuminant"][4], 0.005 + FLOAT_SLACK)}
    for file, (name, table, tolerance) in copies.items():
        data = scipy.io.loadmat(str(PSYCHTOOLBOX / f"{file}.mat"))
        wavelengths = np.arange(380, 781, 5)
        difference = np.max(np.abs(data[file].ravel() - table.at(wavelengths)))
        check(difference <= tolerance,
              f"{name} against psychtoolbox {file}.mat: largest difference {difference:.5f}")
    basis = scipy.io.loadmat(str(PSYCHTOOLBOX / "B_cieday.mat"))["B_cieday"]
    for i, component in enumerate(tables["Daylight"]):
        difference = np.max(np.abs(basis[:, i] - component.at(np.arange(380, 781, 5))))
        check(difference <= FLOAT_SLACK, f"S{i} against psychtoolbox B_cieday.mat: largest difference "
                                  f"{difference:.5f}")


def check_daylight(tables):
    components = tables["Daylight"]
    start, step, d65 = read_colord(COLORD_D65)
    rule = daylight_rule(6500, components)
    difference = np.max(np.abs(rule - d65))
    check(difference < 0.005, f"daylight rule at 6500 K against colord's D65: largest difference "
                              f"{difference:.5f} over 300 to 830 nm")
    d65_table = tables["Illuminant"][4]
    difference = np.max(np.abs(d65_table.at(np.arange(300, 831, 5)) - d65))
    check(difference < FLOAT_SLACK, f"1 nm D65 passes through colord's 5 nm values: largest difference "
                             f"{difference:.6f}")
    for index, temperature in ((3, 7500), (5, 5500), (6, 5000)):
        table = tables["Illuminant"][index]
        difference = np.max(np.abs(table.values - daylight_rule(temperature, components)))
        check(difference <= 0.0005 + FLOAT_SLACK,
              f"{ILLUMINANTS[index]} is the daylight rule at {temperature} K rounded to three "
              f"decimals: largest difference {difference:.5f}")


def check_white_points(tables):
    names = {name: i for i, name in enumerate(ILLUMINANTS)}
    for (name, observer), expected in WHITE_POINTS.items():
        k, xyz = white_point(tables["Illuminant"][names[name]], tables["Observer"][observer])
        good = all(abs(a - b) < 0.005 for a, b in zip(xyz, expected))
        check(good, f"white point {name} {('2', '10')[observer]} degrees: "
                    f"{xyz[0]:.4f} {xyz[1]:.4f} {xyz[2]:.4f} (k {k:.7f}), wanted "
                    f"{expected[0]:.2f} {expected[1]:.2f} {expected[2]:.2f}")
    print("\nWhite points of every built-in table at 1 nm over 360 to 780 nm:")
    rows = [(name, t) for name, t in zip(ILLUMINANTS, tables["Illuminant"])]
    rows += [(f"F{i + 1}", t) for i, t in enumerate(tables["Fluorescent"])]
    for name, table in rows:
        for observer in (0, 1):
            k, xyz = white_point(table, tables["Observer"][observer])
            print(f"  {name:4} {('2', '10')[observer]:>2} deg  X {xyz[0]:9.4f}  Y {xyz[1]:9.4f}  "
                  f"Z {xyz[2]:9.4f}  k {k:.7f}")


def main():
    tables = parse_generated(ROOT / "cmetry" / "CieTables.cpp")
    check_second_copies(tables)
    check_daylight(tables)
    check_white_points(tables)
    if failures:
        print(f"\n{len(failures)} check(s) failed")
        sys.exit(1)
    print("\nall checks passed")


if __name__ == "__main__":
    main()
