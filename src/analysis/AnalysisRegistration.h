#pragma once
// The analysis layer's menu entries, its procedures for scripts and its double
// click, registered once a context.

namespace core {
class AppContext;
}

namespace analysis {

// Commands: the geometry and vertex colour maps and the three split entries.
// Procedures: the colour scale (setup, polygon, normal, inverse, vertex, vertices,
// percentage), the geometry colour maps with p_subNameValue, the split and the
// section line. Also makes frm29_ColourMap known, and chains the split's double
// click onto ctx.input.onDblClick. A second call does nothing.
void registerAnalysis(core::AppContext& ctx);

}  // namespace analysis
