// The entry point that libFuzzer and driver.cpp call.
#include "fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    qvx::FuzzInput input(data, size);
    qvx::CheckInput(input);
    return 0;
}
