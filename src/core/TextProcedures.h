#pragma once
// The separator and line-end normalisers and the name-record helpers as scripts
// reach them with `call`.

namespace core {

class ProcedureRegistry;

void registerTextProcedures(ProcedureRegistry& registry);

}  // namespace core
