// Any bytes as a stress point file: the reader must end, with or without a fault,
// and never crash, for every criterion.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "analysis/StressPoints.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    using analysis::Criterion;
    for (Criterion c : {Criterion::FOS, Criterion::S1S3, Criterion::RCF, Criterion::None}) {
        analysis::StressImportSettings s;
        s.criterion = c;
        s.step = 1;
        s.sig1CutOff = -100;
        s.sig3CutOff = -100;
        s.rock.ucsRockmass = 80;
        s.rock.frictionAngle = 30;
        s.rock.ucsIntact = 160;
        s.rock.downgrade = c == Criterion::RCF ? 0.0f : 0.8f;  // F * UCSi = 0 too
        const auto r = analysis::readStressPoints(text, s);
        if (r.linesRead < 0 || (r.points.size() > static_cast<std::size_t>(r.linesRead)))
            __builtin_trap();
    }
    return 0;
}
