// Ends the program when an expectation of a fuzz target fails, so that the fuzzer keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace demovex::fuzz {

[[noreturn]] inline void Fail(const char* expectation, const char* file, int line) {
    std::fprintf(stderr, "%s:%d: not so: %s\n", file, line, expectation);
    std::abort();
}

}  // namespace demovex::fuzz

#define FUZZ_CHECK(expectation) \
    ((expectation) ? void() : ::demovex::fuzz::Fail(#expectation, __FILE__, __LINE__))
