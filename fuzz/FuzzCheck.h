// A property that a fuzz target states: abort, so that the fuzzer keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>

#define FUZZ_CHECK(condition)                                        \
    do {                                                             \
        if (!(condition)) {                                          \
            std::fprintf(stderr, "does not hold: %s\n", #condition); \
            std::abort();                                            \
        }                                                            \
    } while (false)
