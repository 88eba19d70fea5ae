#pragma once
// Reading the fields of a Map3D line: coordinates times 10, codes as whole
// numbers (a code beyond 32 bits is a fault of the reader).

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/LenientNumber.h"
#include "engine/Types.h"
#include "import/ImportRun.h"

namespace importers {

using Fields = std::vector<std::string_view>;

// No Map3D line shape reads past the sixth field.
inline constexpr std::size_t kFieldsKept = 8;

inline engine::Point3 filePoint(const Fields& f, std::size_t first) {
    return {core::valNumber(f[first]) * 10.0, core::valNumber(f[first + 1]) * 10.0,
            core::valNumber(f[first + 2]) * 10.0};
}

inline std::int32_t fileCode(std::string_view field) {
    const auto code = core::wholeNumber(core::valNumber(field));
    if (!code) throw ImportFault("a code that no whole number holds");
    return *code;
}

}  // namespace importers
