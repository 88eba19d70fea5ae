#pragma once
// The mesh and tube builders, the marker wrappers and the tube centre line as
// scripts reach them with `call`.

namespace core {
class ProcedureRegistry;
}

namespace builders {

// The drill-line rings a script prepares live with the registry (one per window).
void registerBuilderProcedures(core::ProcedureRegistry& registry);

}  // namespace builders
