# make run   - install what is missing, build, open the window on the demo model
#              (with no display: render the demo to a PNG and say where it is)
# make test  - install, build and run every test
# make bench - benchmarks, reported as ratios against reference runs
# make fuzz  - build the fuzz harnesses with clang and run each for a bounded time
# make asan  - the test suite under address and undefined-behaviour sanitizers

JOBS ?= 2
BUILD ?= build
CMAKE_FLAGS ?=
FUZZ_SECONDS ?= 30

.PHONY: all deps configure build run test bench fuzz asan clean demo install

all: build

deps:
	@./scripts/install-deps.sh

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_FLAGS)

configure: deps $(BUILD)/build.ninja

build: configure
	cmake --build $(BUILD) -j$(JOBS)

demo: build
	@./scripts/make-demo.sh $(BUILD)

run: build demo
	@./scripts/run-window.sh $(BUILD)

test: build
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS) --timeout 900

bench: deps
	cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTARVIK_BENCH=ON -DTARVIK_TESTS=OFF -DTARVIK_GUI=OFF
	cmake --build build-bench -j$(JOBS)
	./bench/run.sh build-bench

fuzz: deps
	CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARVIK_FUZZ=ON -DTARVIK_TESTS=OFF -DTARVIK_GUI=OFF -DTARVIK_RENDER=OFF
	cmake --build build-fuzz -j$(JOBS)
	./fuzz/run.sh build-fuzz $(FUZZ_SECONDS)

asan: deps
	cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTARVIK_SANITIZE=ON -DTARVIK_GUI=OFF
	cmake --build build-asan -j$(JOBS)
	cd build-asan && ASAN_OPTIONS=detect_leaks=1 ctest --output-on-failure -j$(JOBS) --timeout 1800

PREFIX ?= /usr/local
install: build
	install -Dm755 $(BUILD)/tarvik $(DESTDIR)$(PREFIX)/bin/tarvik
	install -Dm755 $(BUILD)/tarvik-cli $(DESTDIR)$(PREFIX)/bin/tarvik-cli
	install -Dm644 packaging/tarvik.desktop $(DESTDIR)$(PREFIX)/share/applications/tarvik.desktop
	install -Dm644 packaging/tarvik-state.xml $(DESTDIR)$(PREFIX)/share/mime/packages/tarvik-state.xml
	install -Dm644 packaging/tarvik-state.svg $(DESTDIR)$(PREFIX)/share/icons/hicolor/scalable/mimetypes/application-x-tarvik-state.svg
	install -Dm644 packaging/tarvik-state.svg $(DESTDIR)$(PREFIX)/share/icons/hicolor/scalable/apps/tarvik.svg
	-update-mime-database $(DESTDIR)$(PREFIX)/share/mime
	-update-desktop-database $(DESTDIR)$(PREFIX)/share/applications

clean:
	rm -rf $(BUILD) build-bench build-fuzz build-asan
