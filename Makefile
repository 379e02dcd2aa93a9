# The everyday commands. Everything configures into build/ (override with BUILD=...).
BUILD ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: all configure test test-windows demo bench bench-usb asan tsan stress-sanitizers stress-one fuzz soak format check-format check-sources check-packages tidy clean

all: configure
	cmake --build $(BUILD) -j $(JOBS)

configure:
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)

# The tests build with warnings as errors; a plain build only warns.
test: override CMAKE_FLAGS += -DORBEL_WERROR=ON
test: all
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# orbel.dll cross-built with mingw-w64 into build-windows and tested under Wine against the
# virtual instrument of the Linux build; needs the packages mingw-w64, wine64 and wine64-tools.
test-windows:
	bash scripts/test-windows.sh $(JOBS)

bench: configure
	cmake --build $(BUILD) -j $(JOBS) --target bench

# The transport benchmarks over the virtual instrument shown as a USB device (needs umockdev).
bench-usb: configure
	cmake --build $(BUILD) -j $(JOBS) --target orbel_bench orbel-sim
	sh tests/api/run-over-usb.sh $(BUILD)/sim/orbel-sim $(BUILD)/bench/orbel_bench \
		--benchmark_filter='TriggerMeasurementHostCpu|StripThroughput|OpenAndLoad'

# A tour of the instrument on a virtual one, plugged in for the tour and unplugged after it. It
# builds only what the tour runs: the module, the program and the virtual instrument, in a build
# of its own that a fresh clone finishes soon: a unity build, lightly optimised, without debug
# information and without the tests.
DEMO_BUILD ?= build-demo
demo:
	cmake -S . -B $(DEMO_BUILD) -DCMAKE_UNITY_BUILD=ON -DBUILD_TESTING=OFF -DCMAKE_BUILD_TYPE=Release \
	  "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG" "-DCMAKE_C_FLAGS_RELEASE=-O1 -DNDEBUG" $(CMAKE_FLAGS)
	cmake --build $(DEMO_BUILD) -j $(JOBS) --target orbel-demo-programs
	@sh scripts/demo.sh $(DEMO_BUILD)

# The same tests under AddressSanitizer with UndefinedBehaviorSanitizer, and under ThreadSanitizer.
asan:
	$(MAKE) test BUILD=build-asan CMAKE_FLAGS="-DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=address"

tsan:
	$(MAKE) test BUILD=build-tsan CMAKE_FLAGS="-DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=thread"

# Eight host threads mixing every exported function, under both sanitizers as above; only the
# module, the virtual instrument and the one test program are built, the first two as unity builds.
STRESS_SECONDS ?= 30

stress-sanitizers:
	$(MAKE) stress-one BUILD=build-asan CMAKE_FLAGS="-DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=address -DCMAKE_UNITY_BUILD=ON"
	$(MAKE) stress-one BUILD=build-tsan CMAKE_FLAGS="-DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=thread -DCMAKE_UNITY_BUILD=ON"

stress-one: configure
	cmake --build $(BUILD) -j $(JOBS) --target test_threads
	cd $(BUILD)/tests/threads && ORBEL_STRESS_SECONDS=$(STRESS_SECONDS) ./test_threads

# The fuzz targets of tests/fuzz under libFuzzer with AddressSanitizer and UndefinedBehaviorSanitizer,
# built with clang into build-fuzz (only the targets and what they link), each run FUZZ_SECONDS
# from the seeds of the repository.
FUZZ_SECONDS ?= 60

fuzz:
	cmake -S . -B build-fuzz -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DORBEL_SANITIZE=fuzzer \
	  -DCMAKE_UNITY_BUILD=ON
	cmake --build build-fuzz -j $(JOBS) --target fuzz-targets
	sh scripts/fuzz.sh build-fuzz $(FUZZ_SECONDS)

# Cycles of open, measure, scan, unplug and plug with random faults against a virtual
# instrument (SOAK_CYCLES, default 1000); not in CI, it takes a quarter of an hour or more.
SOAK_CYCLES ?= 1000

soak: configure
	cmake --build $(BUILD) -j $(JOBS) --target orbel_soak
	$(BUILD)/tests/soak/orbel_soak $(SOAK_CYCLES)

# One style for the whole tree, fixed by .clang-format.
format:
	@sh scripts/check-format.sh --fix

check-format:
	@sh scripts/check-format.sh

# Every source named exactly once in the CMakeLists.txt of its folder.
check-sources:
	@python3 scripts/check-sources.py

# The Debian packages, checked with lintian, installed with dpkg (as root) and used by a small C
# host. PACKAGE_BUILD=build reuses the test build, as CI does.
PACKAGE_BUILD ?= build-package
check-packages:
	sh scripts/check-packages.sh $(PACKAGE_BUILD)

# The checks of .clang-tidy over the module, the program and the plug-ins. Some seconds a file,
# a quarter of an hour of processor time for the tree: run by hand, not in CI.
tidy:
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS) -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
	run-clang-tidy -p $(BUILD) -j $(JOBS) -quiet '$(CURDIR)/(api|control|manager|driver|cmetry|utilities|diagnostics|tools|plugins)/'

clean:
	rm -rf build build-asan build-tsan build-package build-fuzz build-windows $(DEMO_BUILD)
