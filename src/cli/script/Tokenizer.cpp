#include "cli/script/Tokenizer.h"

#include <cctype>

namespace script {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }
bool nameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool nameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

}  // namespace

bool isVariableName(const std::string& name) {
    if (name.empty() || !nameStart(name[0])) return false;
    for (char c : name)
        if (!nameChar(c)) return false;
    return true;
}

std::vector<Token> tokenize(
    const std::string& line,
    const std::function<std::optional<std::string>(const std::string&)>& lookup) {
    std::vector<Token> out;
    std::size_t i = 0, n = line.size();
    while (true) {
        while (i < n && isBlank(line[i])) ++i;
        if (i >= n) break;
        Token tok;
        bool inQuotes = false;
        while (i < n && (inQuotes || !isBlank(line[i]))) {
            char c = line[i];
            if (c == '"') {
                inQuotes = !inQuotes;
                tok.quoted = true;
                ++i;
            } else if (c == '\\' && inQuotes && i + 1 < n) {
                // Outside quotes a backslash is itself (folder separators).
                char e = line[i + 1];
                switch (e) {
                    case '"':
                        tok.text += '"';
                        break;
                    case '\\':
                        tok.text += '\\';
                        break;
                    case 't':
                        tok.text += '\t';
                        break;
                    case 'r':
                        tok.text += '\r';
                        break;
                    case 'n':
                        tok.text += '\n';
                        break;
                    default:
                        tok.text += '\\';
                        tok.text += e;
                        break;
                }
                i += 2;
            } else if (c == '$' && i + 1 < n && nameStart(line[i + 1])) {
                std::size_t j = i + 1;
                while (j < n && nameChar(line[j])) ++j;
                std::string name = line.substr(i + 1, j - i - 1);
                auto value = lookup ? lookup(name) : std::nullopt;
                if (!value) throw SyntaxError("unknown variable '$" + name + "'");
                tok.text += *value;
                i = j;
            } else {
                tok.text += c;
                ++i;
            }
        }
        if (inQuotes) throw SyntaxError("a quote is not closed");
        out.push_back(std::move(tok));
    }
    return out;
}

}  // namespace script
