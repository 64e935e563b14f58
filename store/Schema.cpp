#include "store/Schema.h"

#include <optional>
#include <utility>

namespace store {

namespace {

constexpr std::string_view allowAllText = "1";
constexpr std::string_view denyAllText = "2";

}  // namespace

AppRuleRecord AppRuleRecord::of(const Dictionary& appRulesFile, std::string_view bundleIdentifier) {
    AppRuleRecord record;
    const Value* stored = appRulesFile.find(bundleIdentifier);
    std::optional<Dictionary> dictionary = stored ? stored->dictionary() : std::nullopt;
    if (dictionary) record.dictionary_ = std::move(*dictionary);
    return record;
}

AppRuleRecord AppRuleRecord::fresh() {
    AppRuleRecord record;
    record.dictionary_.set(keys::allow, Value(Array()));
    record.dictionary_.set(keys::deny, Value(Array()));
    record.setBlanketMode(BlanketMode::neither);
    return record;
}

bool AppRuleRecord::enabled() const {
    return !dictionary_.contains(keys::enabled) || isTrue(dictionary_, keys::enabled);
}

void AppRuleRecord::setEnabled(bool enabled) {
    dictionary_.set(keys::enabled, Value(enabled));
}

BlanketMode AppRuleRecord::blanketMode() const {
    const Value* stored = dictionary_.find(keys::allowEverything);
    std::optional<std::string> text = stored ? stored->string() : std::nullopt;
    if (text == allowAllText) return BlanketMode::allowAll;
    if (text == denyAllText) return BlanketMode::denyAll;
    return BlanketMode::neither;
}

void AppRuleRecord::setBlanketMode(BlanketMode mode) {
    std::string_view text = mode == BlanketMode::allowAll  ? allowAllText
                            : mode == BlanketMode::denyAll ? denyAllText
                                                           : std::string_view();
    dictionary_.set(keys::allowEverything, Value(text));
}

bool AppRuleRecord::flag(std::string_view key) const {
    const Value* value = dictionary_.find(key);
    return value && value->boolean().value_or(true);
}

void AppRuleRecord::setFlag(std::string_view key, bool on) {
    dictionary_.set(key, Value(on));
}

void AppRuleRecord::storeIn(Dictionary& appRulesFile, std::string_view bundleIdentifier) const {
    appRulesFile.set(bundleIdentifier, Value(dictionary_));
}

bool isTrue(const Dictionary& dictionary, std::string_view key) {
    const Value* value = dictionary.find(key);
    return value && value->boolean() == true;
}

bool boolValue(const Dictionary& dictionary, std::string_view key) {
    const Value* value = dictionary.find(key);
    return value && value->boolValue();
}

}  // namespace store
