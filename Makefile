# The everyday commands. Everything configures into build/ (override with BUILD=...).
BUILD ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: all configure test demo bench asan tsan format check-format check-sources clean

all: configure
	cmake --build $(BUILD) -j $(JOBS)

configure:
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)

# The tests build with warnings as errors; a plain build only warns.
test: override CMAKE_FLAGS += -DORBEL_WERROR=ON
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

# One style for the whole tree, fixed by .clang-format.
format:
	@sh scripts/check-format.sh --fix

check-format:
	@sh scripts/check-format.sh

# Every source named exactly once in the CMakeLists.txt of its folder.
check-sources:
	@python3 scripts/check-sources.py

clean:
	rm -rf build build-asan build-tsan
