#pragma once

#include <functional>

#include "store/NotifyCenter.h"
#include "store/Writers.h"

namespace store {

// The rows of the writers' table, and what else tests of the store share.
struct Verb {
    const char* name;
    Writer writer;
};

constexpr Verb everyVerb[] = {
    {"prune", writers::pruneApps},
    {"add an app", writers::addApp},
    {"delete an app", writers::deleteApp},
    {"enable an app", writers::appEnabled},
    {"disable an app", writers::appDisabled},
    {"an app's switch", writers::appSwitch},
    {"a global list", writers::globalRuleList},
    {"an app's list", writers::appRuleList},
    {"a flag", writers::guiFlag},
    {"a global switch", writers::globalSwitch},
    {"import a list", writers::listImport},
};

constexpr File everyFile[] = {File::appRules, File::globalRules, File::guiSettings};

// Keeps what was posted, and has a look at the files at that moment.
struct Posts : NotifyCenter {
    void post(std::string_view name) override {
        names.emplace_back(name);
        if (atPost) atPost();
    }

    std::vector<std::string> names;
    std::function<void()> atPost;
};

}  // namespace store
