# The commands a newcomer uses. Every install step lives in scripts/setup.
.PHONY: setup build run test bench fuzz asan format tidy clean install package package-check

# Where `make install` puts the program: PREFIX/bin, PREFIX/share.
PREFIX ?= /usr/local

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

# An optimised build of the program and its icons, installed as a desktop program.
install: setup
	@cmake --preset release >/dev/null
	@cmake --build --preset release --target tarnwick tw_icons
	@cmake --install build-release --prefix "$(PREFIX)"

# A Debian package (build-release/tarnwick_<version>_<arch>.deb) with its dependencies worked out.
package: setup
	@cmake --preset release >/dev/null
	@cmake --build --preset release --target tarnwick tw_icons
	@cd build-release && cpack -G DEB

# Installs that package on this machine, starts it from its desktop entry under Xvfb, removes it.
package-check: package
	@scripts/check-package build-release/tarnwick_*.deb

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

tidy: build
	@git ls-files 'src/*.cpp' | xargs clang-tidy -p build --quiet

clean:
	@rm -rf build build-asan build-release
