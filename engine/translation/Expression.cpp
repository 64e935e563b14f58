#include "engine/translation/Expression.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace engine {

namespace {

using Texts = std::vector<std::string>;

// A text as an expression for itself.
std::string escaped(std::string_view text) {
    std::string expression;
    for (const char c : text) {
        const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                             c == '_' || c == '/' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
        if (!isPlain) expression += '\\';
        expression += c;
    }
    return expression;
}

}  // namespace

std::string anyOf(const Texts& expressions) {
    std::string all = "(?:";
    for (const std::string& expression : expressions) {
        if (all.size() > 3) all += '|';
        all += expression;
    }
    return all + ')';
}

std::string anyTextOf(const Texts& texts) {
    Texts expressions;
    std::transform(texts.begin(), texts.end(), std::back_inserter(expressions), escaped);
    return anyOf(expressions);
}

Condition isOneOf(std::string operand, const Texts& texts, bool isCaseSensitive) {
    if (texts.size() == 1) return {Condition::Type::simple, std::move(operand), texts.front(), isCaseSensitive};
    return {Condition::Type::regexp, std::move(operand), '^' + anyTextOf(texts) + '$', isCaseSensitive};
}

}  // namespace engine
