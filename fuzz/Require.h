// What a fuzzer does when a decoder breaks a promise its callers rely on: says which, and aborts,
// so that libFuzzer keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace tw::fuzz {

inline void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "invariant broken: %s\n", what);
        std::abort();
    }
}

} // namespace tw::fuzz
