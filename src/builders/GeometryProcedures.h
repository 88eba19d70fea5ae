#pragma once
// The geometry and angle functions as scripts reach them with `call`.

namespace core {
class ProcedureRegistry;
}

namespace builders {

void registerGeometryProcedures(core::ProcedureRegistry& registry);

}  // namespace builders
