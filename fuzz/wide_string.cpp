// XString beside its twin: the input is a script of operations (tests/support/wide_string_twin.h).
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "support/wide_string_twin.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string operation = WideStringTwin(data, size).Run();
    if (operation.empty()) return 0;
    std::fprintf(stderr, "XString and its twin disagree after: %s\n", operation.c_str());
    std::abort();
}
