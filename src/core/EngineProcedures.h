#pragma once
// Every engine operation as a procedure scripts can `call`, under its name
// without the STATE_ prefix (the registry finds the prefixed name too).
//
// Arguments follow the operation's own order. A plane is two arguments, its
// normal (a point) and d; out arguments are written back and shown after the call.

namespace core {

class ProcedureRegistry;

void registerEngineProcedures(ProcedureRegistry& registry);

}  // namespace core
