# The two commands a newcomer needs: `make run` and `make test`.
# Both install missing Debian packages first (scripts/setup), then configure and build.

BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo
SANITIZE_DIR ?= build-sanitize
TSAN_DIR ?= build-tsan
FUZZ_DIR ?= build-fuzz
FUZZ_SECONDS ?= 120
JOBS ?= $(shell nproc)

.PHONY: all setup build run test test-sanitize test-tsan stress soak fuzz fuzz-build bench bundle install package format tidy clean

all: build

setup:
	@scripts/setup

$(BUILD_DIR)/build.ninja: | setup
	cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE)

build: setup $(BUILD_DIR)/build.ninja
	cmake --build $(BUILD_DIR) -j $(JOBS)

# The menu-bar agent when there is a desktop to show it on, else the readings as a stream.
# Its log lines come to this terminal unless CORVANE_LOG is set otherwise.
run: build
	@if [ -n "$$DISPLAY" ] || [ -n "$$WAYLAND_DISPLAY" ]; then \
	    CORVANE_LOG="$${CORVANE_LOG-stderr}" exec $(BUILD_DIR)/corvane-agent; \
	else \
	    echo "make run: no display (DISPLAY and WAYLAND_DISPLAY are unset), so no menu bar; streaming the readings instead"; \
	    exec $(BUILD_DIR)/corvane-agent --stream; \
	fi

# Warnings are errors here (and so in CI, which runs this), though not in a plain `make build`.
test: setup
	cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DCORVANE_WERROR=ON
	cmake --build $(BUILD_DIR) -j $(JOBS)
	ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

# The whole suite under AddressSanitizer and UndefinedBehaviorSanitizer.
test-sanitize: setup
	cmake -S . -B $(SANITIZE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug \
	    -DCORVANE_SANITIZE=address,undefined -DCORVANE_BUILD_BENCH=OFF -DCORVANE_WERROR=ON
	cmake --build $(SANITIZE_DIR) -j $(JOBS)
	ctest --test-dir $(SANITIZE_DIR) --output-on-failure -j $(JOBS)

# The tests whose code runs on more than one thread under ThreadSanitizer: the background
# passes and their task slots, the Qt runtime's background runner, the poll loop's wake-up from
# another thread, the settings store and its watcher, the signal bus. Qt itself is not
# instrumented; tests/tsan.supp names what that hides.
TSAN_TARGETS = corvane-agent-tests corvane-shared-tests corvane-qt-tests corvane-dbus-tests corvane-linux-tests
TSAN_TESTS = Agent\.(SystemMonitor|HardwareSensors|SMCReader|BatteryReader)|Shared\.(SettingsChanges|JSONFileSettingsStore|SettingsStress|SignalListener)|Qt\.(QtRuntime|QtFileChangeWatcher)|Linux\.PollLoop|DBus\.SignalsAndSessionState
test-tsan: setup
	cmake -S . -B $(TSAN_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCORVANE_SANITIZE=thread \
	    -DCORVANE_BUILD_BENCH=OFF -DCORVANE_WERROR=ON
	cmake --build $(TSAN_DIR) -j $(JOBS) --target $(TSAN_TARGETS)
	TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1 suppressions=$(CURDIR)/tests/tsan.supp" \
	    ctest --test-dir $(TSAN_DIR) --output-on-failure -j $(JOBS) -R '$(TSAN_TESTS)'

# The settings stress tests at length: STRESS_WRITES writes by each of three writer processes
# while two others read (the normal suite runs them with 400).
STRESS_WRITES ?= 20000
stress: build
	CORVANE_STRESS_WRITES=$(STRESS_WRITES) $(BUILD_DIR)/tests/CorvaneShared/corvane-shared-tests \
	    --gtest_filter='SettingsStress.*'

# The refresh cycle at length: SOAK_REFRESHES refreshes over a fixture machine with every pass,
# panels opening and closing (the normal suite runs 3000).
SOAK_REFRESHES ?= 100000
soak: build
	CORVANE_SOAK_REFRESHES=$(SOAK_REFRESHES) $(BUILD_DIR)/tests/CorvaneAgent/Soak/corvane-soak-tests

# The libFuzzer harnesses (fuzz/), built with clang under AddressSanitizer and
# UndefinedBehaviorSanitizer; only they and the libraries they call are built. `make fuzz` runs
# each for FUZZ_SECONDS over a corpus seeded from tests/fixtures (FUZZERS="smc mountinfo" picks
# some) and fails when one finds a fault.
fuzz-build: setup
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	    -DCORVANE_BUILD_FUZZERS=ON -DCORVANE_SANITIZE=address,undefined \
	    -DCORVANE_BUILD_TESTS=OFF -DCORVANE_BUILD_BENCH=OFF -DCORVANE_WERROR=ON
	cmake --build $(FUZZ_DIR) --target fuzzers -j $(JOBS)

fuzz: fuzz-build
	scripts/fuzz $(FUZZ_DIR) $(FUZZ_SECONDS) $(FUZZERS)

# Each figure beside its floor and the ratio: the benchmark program's table, then the running
# stream beside its floor program for BENCH_SECONDS.
BENCH_SECONDS ?= 60
bench: build
	$(BUILD_DIR)/bench/corvane-bench
	CORVANE_BUILD=$(BUILD_DIR) bench/stream-cpu.sh $(BENCH_SECONDS)

# The portable bundle: $(BUILD_DIR)/bundle/Corvane.app and Corvane-<version>.tar.xz.
bundle: build
	cmake --build $(BUILD_DIR) --target bundle

# Installs under PREFIX (default /usr/local), into DESTDIR when set: `make install
# PREFIX=/opt/corvane DESTDIR=/tmp/stage`. The prefix is configured into the build, because the
# desktop entries and the user unit name the programs by their full paths.
PREFIX ?= /usr/local
install: setup
	cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DCMAKE_INSTALL_PREFIX=$(PREFIX)
	cmake --build $(BUILD_DIR) -j $(JOBS)
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD_DIR)

# The Debian package, built by debhelper (debian/) from a copy of the sources in
# $(BUILD_DIR)/package/, so the tree stays clean; the .deb files land in $(BUILD_DIR)/.
package:
	@scripts/setup package
	scripts/build-package $(BUILD_DIR)

format:
	git ls-files '*.h' '*.cpp' | xargs clang-format -i

# clang-tidy with the checks in .clang-tidy over every source file of ours, using the compile
# commands of $(BUILD_DIR); any finding fails. Not part of CI: on a two-core runner it takes
# longer than the suite. The build's GCC-only warning flags are not clang-tidy's to judge.
tidy: build
	git ls-files '*.cpp' | xargs -P $(JOBS) -n 8 clang-tidy -p $(BUILD_DIR) --quiet \
	    --extra-arg=-Wno-unknown-warning-option

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(FUZZ_DIR) $(TSAN_DIR)
