#pragma once
// The registry of procedures that scripts reach with `call`. Each layer
// registers its own; the script runner converts the tokens by the parameter kinds.

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/Value.h"

namespace core {

class AppContext;

enum class ParamKind { Number, Integer, Handle, Bool, Text, Point, Colour };

struct Procedure {
    std::string name;
    std::vector<ParamKind> params;
    // True when the procedure changes one of its arguments (out or by reference):
    // the transcript then shows every argument after the call, then the result.
    bool changesArgs = false;
    // Indexes of the arguments the procedure only writes: any token will do for
    // them (a value that does not read as the kind gives its empty value).
    std::vector<std::size_t> outArgs;
    // Arguments are converted already; the body may write back into them.
    std::function<Value(AppContext&, std::vector<Value>&)> body;
};

class ProcedureRegistry {
public:
    void add(Procedure p);
    // Also finds "STATE_x" as "x" and "x" as "STATE_x".
    const Procedure* find(const std::string& name) const;
    std::vector<std::string> names() const;

private:
    std::map<std::string, Procedure> procs_;
};

}  // namespace core
