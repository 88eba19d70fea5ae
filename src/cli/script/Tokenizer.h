#pragma once
// Splits one script line into tokens: blanks separate, double quotes hold
// blanks and the escapes \" \\ \t \r \n, and $NAME takes a variable's value.

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace script {

struct Token {
    std::string text;
    bool quoted = false;  // any part was in quotes: never an option or a redirection
};

// A line the tokenizer cannot read (an open quote, an unknown variable).
class SyntaxError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// `lookup` gives a variable's value, or nothing for an unknown name.
std::vector<Token> tokenize(
    const std::string& line,
    const std::function<std::optional<std::string>(const std::string&)>& lookup);

bool isVariableName(const std::string& name);

}  // namespace script
