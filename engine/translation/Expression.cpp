#include "engine/translation/Expression.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "engine/programs/Escaped.h"

namespace engine {

namespace {

using Texts = std::vector<std::string>;

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
