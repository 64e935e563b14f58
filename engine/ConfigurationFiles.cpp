#include "engine/ConfigurationFiles.h"

#include <system_error>

#include "store/SharedFiles.h"
#include "store/rules/RuleFile.h"

namespace engine {

Configuration readConfiguration(const std::filesystem::path& root) {
    const auto read = [&](store::File file) {
        return store::readRuleFile(store::pathOf(file, root)).value_or(store::Dictionary());
    };
    std::error_code ignored;
    return {read(store::File::appRules), read(store::File::globalRules),
            std::filesystem::exists(store::disabledMarker(root), ignored)};
}

}  // namespace engine
