#include "builders/StressTensor.h"

#include <cmath>
#include <memory>
#include <vector>

#include "builders/BuilderMessages.h"
#include "builders/Geometry.h"
#include "builders/Markers.h"
#include "builders/Meshes.h"
#include "core/AppContext.h"
#include "forms/FormNumbers.h"
#include "forms/Frm25StressTensor.h"

namespace builders {

using engine::Engine;
using engine::Handle;
using engine::Point3;

namespace {

constexpr double kTwoPi = 6.28318530717958;

// Trend turned by half a circle, staying within 0 to 360.
double turned(double trend) { return trend < 180 ? trend + 180 : trend - 180; }

}  // namespace

void completeStressTensor(StressTensorValues& v, float sngNorthAxis) {
    const double north = static_cast<double>(sngNorthAxis);
    const double n = -north * kPi;
    const double t1 = v.sig1Trend * kDegree + n;
    const double p1 = v.sig1Plunge * kDegree;
    const double t2 = v.sig2Trend * kDegree + n;

    Point3 v1{std::cos(p1) * std::cos(-t1), std::cos(p1) * std::sin(-t1), -std::sin(p1)};
    if (v1.z == 0) v1.z = kDivZero;
    Point3 v2{std::cos(-t2), std::sin(-t2), 0};
    // Sigma 2 is turned up or down until it is square to sigma 1.
    v2.z = -(v2.x * v1.x + v2.y * v1.y) / v1.z;
    const double sig2Plunge = -ASinDeg(v2.z / engine::length(v2));

    Point3 v3 = Engine::math_cross(v1, v2);
    Engine::math_normalize_vector(v3);
    const double a = 180 - std::atan(v3.y / v3.x) * 180 / kPi + north * 180;
    double sig3Trend = 0;
    if (t2 > 0 && t2 < kPi)
        sig3Trend = a;
    else if (t2 > kPi && t2 < kTwoPi)
        sig3Trend = a + 180;
    const double sig3Plunge = -ASinDeg(v3.z / engine::length(v3));
    // Only after the trend: the division above may have met the zero first.
    if (v3.x == 0) v3.x = kDivZero;

    v.sig3Trend = roundHalfEven1(sig3Trend);
    v.sig3Plunge = roundHalfEven1(sig3Plunge);
    v.sig2Plunge = roundHalfEven1(sig2Plunge);
}

bool calculateStressTensor(StressTensorValues& v, float sngNorthAxis,
                           const std::function<void()>& onSig3Turned) {
    for (double x : {v.sig1Magnitude, v.sig2Magnitude, v.sig3Magnitude, v.sig1Trend, v.sig1Plunge,
                     v.sig2Trend})
        if (x < 0) return false;
    // Turning sigma 3 and completing again can turn it once more for some
    // tensors, and then forever: the second turn is the last.
    for (int pass = 0; pass < 2; ++pass) {
        completeStressTensor(v, sngNorthAxis);
        if (v.sig2Plunge < 0) {
            v.sig2Plunge = -v.sig2Plunge;
            v.sig2Trend = turned(v.sig2Trend);
        }
        if (!(v.sig3Plunge < 0)) break;
        v.sig3Plunge = -v.sig3Plunge;
        v.sig3Trend = turned(v.sig3Trend);
        if (onSig3Turned) onSig3Turned();
    }
    return true;
}

StressTensorValues readStressTensorForm(const forms::Frm25StressTensor& f) {
    auto val = [&f](const char* name) { return forms::valText(f.text(name)); };
    StressTensorValues v;
    v.sig1Magnitude = val("cboSig1Magnitude");
    v.sig1Trend = val("cboSig1Trend");
    v.sig1Plunge = val("cboSig1Plunge");
    v.sig2Magnitude = val("cboSig2Magnitude");
    v.sig2Trend = val("cboSig2Trend");
    v.sig2Plunge = val("cboSig2Plunge");
    v.sig3Magnitude = val("cboSig3Magnitude");
    v.sig3Trend = val("cboSig3Trend");
    v.sig3Plunge = val("cboSig3Plunge");
    return v;
}

namespace {

// The computed boxes, and sigma 2's trend where the lower hemisphere turned it.
void writeResults(forms::Frm25StressTensor& f, const StressTensorValues& before,
                  const StressTensorValues& v) {
    if (v.sig2Trend != before.sig2Trend) f.setText("cboSig2Trend", forms::numberText(v.sig2Trend));
    f.setText("cboSig2Plunge", forms::numberText(v.sig2Plunge));
    f.setText("cboSig3Trend", forms::numberText(v.sig3Trend));
    f.setText("cboSig3Plunge", forms::numberText(v.sig3Plunge));
}

}  // namespace

void cmdCalculateTensor1(core::AppContext& ctx) {
    auto& f = stressTensorForm(ctx);
    const StressTensorValues before = readStressTensorForm(f);
    StressTensorValues v = before;
    // The boxes show each pass before its message, as the passes run.
    auto turnedSig3 = [&] {
        writeResults(f, before, v);
        ctx.ui.msgBox(kSig3TurnedText, ui::Buttons::OK, kSig3TurnedTitle);
    };
    if (!calculateStressTensor(v, ctx.state.sngNorthAxis, turnedSig3)) {
        ctx.ui.msgBox(kNegativeText, ui::Buttons::OK, kNegativeTitle);
        return;
    }
    writeResults(f, before, v);
}

Handle drawStressTensor(core::AppContext& ctx, const Point3& p) {
    auto& f = stressTensorForm(ctx);
    auto single = [&f](const char* name) {
        return static_cast<float>(forms::valText(f.text(name)));
    };
    const float m1 = single("cboSig1Magnitude");
    if (m1 == 0) {
        ctx.ui.msgBox(forms::Frm25StressTensor::kZeroText, ui::Buttons::OK,
                      forms::Frm25StressTensor::kZeroTitle);
        return 0;
    }
    const double l1 = static_cast<double>(m1 / m1) * single("cboSig1Length") * 10.0;
    const double d = single("cboSig1Diameter") * 10.0;
    const float north = ctx.state.sngNorthAxis;
    const double northTurn = north == 0.5f ? static_cast<double>(north) * kPi : 0.0;

    struct Stress {
        const char *magnitude, *trend, *plunge;
        engine::Rgb colour;
    };
    const Stress stresses[] = {
        {"cboSig1Magnitude", "cboSig1Trend", "cboSig1Plunge", kSigma1Colour},
        {"cboSig2Magnitude", "cboSig2Trend", "cboSig2Plunge", kSigma2Colour},
        {"cboSig3Magnitude", "cboSig3Trend", "cboSig3Plunge", kSigma3Colour},
    };
    Engine& eng = ctx.engine;
    std::vector<Handle> cylinders;
    for (const Stress& s : stresses) {
        const float m = single(s.magnitude);
        if (m == 0) continue;
        const double length = static_cast<double>(m / m1) * l1;
        const double t = single(s.trend) * kDegree - northTurn;
        const double pl = single(s.plunge) * kDegree;
        const Point3 tip = p + Point3{length * std::cos(pl) * std::cos(t),
                                      -length * std::cos(pl) * std::sin(t), -length * std::sin(pl)};
        const Handle h = P_fncCreateCylinder(eng, tip, p, d, s.colour);
        if (h == 0) {
            for (Handle c : cylinders) eng.group_delete_members(c);
            checkBuilderHandle(ctx, h, BuilderFailure::Cylinder);
            return 0;
        }
        cylinders.push_back(h);
    }
    const Handle group = eng.group_create(kMarkerGroup);
    if (group == 0) {
        for (Handle c : cylinders) eng.group_delete_members(c);
        checkBuilderHandle(ctx, group, BuilderFailure::Object);
        return 0;
    }
    for (Handle c : cylinders) eng.group_set_father_group(c, group);
    return group;
}

Handle placeStressTensor(core::AppContext& ctx, const Point3& p) {
    const Handle h = drawStressTensor(ctx, p);
    if (h != 0) finishPlacedMarker(ctx, h);
    return h;
}

forms::Frm25StressTensor& stressTensorForm(core::AppContext& ctx) {
    using forms::Frm25StressTensor;
    auto* f = dynamic_cast<Frm25StressTensor*>(ctx.forms.find(Frm25StressTensor::kName));
    if (f) return *f;
    auto form = std::make_unique<Frm25StressTensor>(&ctx);
    f = form.get();
    ctx.forms.add(std::move(form));
    core::AppContext* c = &ctx;
    f->at("cmdCalculateTensor1").onChange = [c] { cmdCalculateTensor1(*c); };
    // The computed boxes start as the completion of the values typed in them.
    StressTensorValues v = readStressTensorForm(*f);
    if (calculateStressTensor(v, ctx.state.sngNorthAxis, {}))
        writeResults(*f, readStressTensorForm(*f), v);
    return *f;
}

}  // namespace builders
