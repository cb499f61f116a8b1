# The commands a newcomer uses. Every install step lives in scripts/setup.
.PHONY: setup build run test bench fuzz asan format tidy clean

setup:
	@scripts/setup

build: setup
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev

run: build
	@scripts/run

test: build
	@ctest --preset dev

asan: setup
	@cmake --preset asan >/dev/null
	@cmake --build --preset asan
	@ctest --preset asan

bench: setup
	@cmake --preset release >/dev/null
	@cmake --build --preset release
	@scripts/bench

fuzz: setup
	@cmake --preset asan >/dev/null
	@cmake --build --preset asan
	@scripts/fuzz

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

tidy: build
	@git ls-files 'src/*.cpp' | xargs clang-tidy -p build --quiet

clean:
	@rm -rf build build-asan build-release
