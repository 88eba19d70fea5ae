#pragma once
// The light modes as scripts reach them with `call`.

namespace core {

class ProcedureRegistry;

void registerLightingProcedures(ProcedureRegistry& registry);

}  // namespace core
