#include "store/rules/RuleFile.h"

#include <memory>

#include "store/plist/PropertyListFile.h"
#include "store/rules/RuleEntryRuns.h"

namespace store {

std::optional<Dictionary> readRuleFile(const std::filesystem::path& path) {
    std::error_code ignored;
    return readRuleFile(path, ignored);
}

std::optional<Dictionary> readRuleFile(const std::filesystem::path& path, std::error_code& failed) {
    return readDictionary(path, std::make_shared<RuleEntryRuns>(), failed);
}

}  // namespace store
