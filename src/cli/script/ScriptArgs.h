#pragma once
// Reading the plain values of script arguments. A value that does not read is a
// script error (exit status 2).

#include <string>
#include <vector>

#include "cli/script/Tokenizer.h"
#include "core/Procedures.h"
#include "engine/Types.h"

namespace script {

[[noreturn]] void badArgs(const std::string& message);

// Exact number of arguments, or a script error naming the command's form.
void expectCount(const std::vector<Token>& a, std::size_t n, const char* usage);
void expectCount(const std::vector<Token>& a, std::size_t lo, std::size_t hi, const char* usage);

bool readNumber(const std::string& s, double& out);
double number(const std::string& s, const char* what);
// A whole number; a number with a fraction is refused.
long long integer(const std::string& s, const char* what);
engine::Point3 point(const std::string& s, const char* what);
engine::Rgb colour(const std::string& s, const char* what);
bool boolean(const std::string& s, const char* what);

// A token as the procedure's parameter of kind `k`; an out argument takes any token.
core::Value argument(core::ParamKind k, const std::string& token, bool outOnly,
                     const std::string& what);

bool isOption(const Token& t, const char* name);

}  // namespace script
