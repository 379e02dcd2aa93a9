#!/usr/bin/python3
"""Spectra -> CIELab in vectorised numpy, the floor the batch colour path must beat.

Prints min / median million spectra per second of CPU time for numpy, and, given the path of
orbel_bench, those of BM_BatchSpectraToCIELab from the same run beside them:

    /usr/bin/python3 bench/NumpyFloor.py build/bench/orbel_bench
"""
import json
import os
import statistics
import subprocess
import sys
import time

# One core, as the batch path runs on one; set before numpy loads its BLAS.
os.environ.setdefault("OPENBLAS_NUM_THREADS", "1")
import numpy  # noqa: E402

SPECTRA = 4096
REPETITIONS = 10
# D50 white of the 2 degree observer; any white costs the same.
WHITE = numpy.array([96.42, 100.0, 82.49])


def lab(spectra, weights):
    """CIE 15 (2004): XYZ by one matrix product, then L*, a*, b* with the cube root."""
    xyz = (spectra @ weights).astype(numpy.float64)
    t = xyz * (WHITE[1] / WHITE) / 100.0
    f = numpy.where(t > 0.008856, numpy.cbrt(t), 7.787 * t + 0.13793103)
    result = numpy.empty_like(f)
    result[:, 0] = numpy.maximum(116.0 * f[:, 1] - 16.0, 0.0)
    result[:, 1] = 500.0 * (f[:, 0] - f[:, 1])
    result[:, 2] = 200.0 * (f[:, 1] - f[:, 2])
    return result.astype(numpy.float32)


def numpy_rates():
    generator = numpy.random.default_rng(23)
    spectra = generator.random((SPECTRA, 36), dtype=numpy.float32)
    weights = generator.random((36, 3), dtype=numpy.float32)
    rates = []
    for _ in range(REPETITIONS):
        rounds = 0
        start = time.process_time()
        while time.process_time() - start < 0.5:
            lab(spectra, weights)
            rounds += 1
        rates.append(rounds * SPECTRA / (time.process_time() - start) / 1e6)
    return rates


def orbel_rates(benchmark):
    output = subprocess.run(
        [benchmark, "--benchmark_filter=BM_BatchSpectraToCIELab$", "--benchmark_format=json",
         f"--benchmark_repetitions={REPETITIONS}"],
        check=True, capture_output=True, text=True).stdout
    runs = json.loads(output)["benchmarks"]
    return [run["items_per_second"] / 1e6 for run in runs if run.get("run_type") == "iteration"]


def line(name, rates):
    return f"{name:28s} {min(rates):6.2f} / {statistics.median(rates):6.2f} M spectra/s (min / median)"


def main():
    floor = numpy_rates()
    print(line("numpy (vectorised)", floor))
    if len(sys.argv) > 1:
        ours = orbel_rates(sys.argv[1])
        print(line("orbel SpectrumBatch", ours))
        print(f"{'ratio of medians':28s} {statistics.median(ours) / statistics.median(floor):6.2f}")


if __name__ == "__main__":
    main()
