// The separator and line-end normalisers on any bytes: no crash, and afterwards
// no blank, comma or line end is left and no run of tabs grows.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/TextNormalise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string line(reinterpret_cast<const char*>(data), size);
    std::string a = line;
    core::P_subNormaliseLineEnds(a);
    if (a.find('\r') != std::string::npos || a.find('\n') != std::string::npos) __builtin_trap();
    std::string b = line;
    core::P_subNormaliseSeparators(b, 3);
    if (b.find(' ') != std::string::npos || b.find(',') != std::string::npos) __builtin_trap();
    if (b.size() > line.size()) __builtin_trap();
    return 0;
}
