// One libFuzzer program: DEMOVEX_FUZZ_TARGET names the function that it feeds.
#include "tests/fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    demovex::fuzz::DEMOVEX_FUZZ_TARGET(data, size);
    return 0;
}
