# The everyday commands. Everything configures into build/ (override with BUILD=...).
BUILD ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: all configure test demo bench asan tsan stress-sanitizers stress-one format check-format clean

all: configure
	cmake --build $(BUILD) -j $(JOBS)

configure:
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)

test: all
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: configure
	cmake --build $(BUILD) -j $(JOBS) --target bench

# A tour of the instrument on a virtual one, plugged in for the tour and unplugged after it.
demo: all
	@sh scripts/demo.sh $(BUILD)

# The same tests under AddressSanitizer with UndefinedBehaviorSanitizer, and under ThreadSanitizer.
asan:
	$(MAKE) test BUILD=build-asan CMAKE_FLAGS="-DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=address"

tsan:
	$(MAKE) test BUILD=build-tsan CMAKE_FLAGS="-DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=thread"

# Eight host threads mixing every exported function, under both sanitizers as above; only the
# module, the virtual instrument and the one test program are built.
STRESS_SECONDS ?= 30

stress-sanitizers:
	$(MAKE) stress-one BUILD=build-asan CMAKE_FLAGS="-DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=address"
	$(MAKE) stress-one BUILD=build-tsan CMAKE_FLAGS="-DCMAKE_BUILD_TYPE=Debug -DORBEL_SANITIZE=thread"

stress-one: configure
	cmake --build $(BUILD) -j $(JOBS) --target test_threads
	cd $(BUILD)/tests/threads && ORBEL_STRESS_SECONDS=$(STRESS_SECONDS) ./test_threads

# One style for the whole tree, fixed by .clang-format.
format:
	@sh scripts/check-format.sh --fix

check-format:
	@sh scripts/check-format.sh

clean:
	rm -rf build build-asan build-tsan
