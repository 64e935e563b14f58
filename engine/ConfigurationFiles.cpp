#include "engine/ConfigurationFiles.h"

#include <system_error>
#include <utility>

#include "store/SharedFiles.h"
#include "store/rules/RuleFile.h"

namespace engine {

Configuration readConfiguration(const std::filesystem::path& root) {
    std::map<std::string, std::string> unreadable;
    return readConfiguration(root, unreadable);
}

Configuration readConfiguration(const std::filesystem::path& root, std::map<std::string, std::string>& unreadable) {
    std::error_code ignored;
    const auto read = [&](store::File file) {
        const std::filesystem::path path = store::pathOf(file, root);
        std::error_code failed;
        auto content = store::readRuleFile(path, failed);
        if (!content && (failed || std::filesystem::exists(path, ignored)))
            unreadable[path] = failed ? failed.message() : "it is no property list of ours";
        return std::move(content).value_or(store::Dictionary());
    };
    return {read(store::File::appRules), read(store::File::globalRules),
            std::filesystem::exists(store::disabledMarker(root), ignored)};
}

}  // namespace engine
