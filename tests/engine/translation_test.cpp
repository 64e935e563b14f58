// How the daemon's rules are named. That they decide as the pure function does is the fuzz target's matter,
// fuzz/rules.cpp.
#include "engine/translation/Translation.h"

#include <gtest/gtest.h>

#include "engine/Entries.h"
#include "engine/RuleDaemon.h"
#include "store/Schema.h"

namespace engine {
namespace {

namespace keys = store::keys;

TEST(Translation, NamesTellWhatChanged) {
    Configuration configuration;
    const auto rulesWith = [&](std::size_t hosts) {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < hosts; ++i) names.push_back("host" + std::to_string(i) + ".example");
        auto record = store::AppRuleRecord::fresh();
        record.dictionary().set(keys::deny, testing_support::entries(names));
        record.storeIn(configuration.appRules, "mail");
        return translate(configuration, testing_support::programs, true, 10);
    };
    const auto few = rulesWith(9), oneMore = rulesWith(10), many = rulesWith(100), oneMoreThanMany = rulesWith(101);
    ASSERT_EQ(few.size(), 2U);
    EXPECT_NE(few[0].name, oneMore[0].name);
    EXPECT_EQ(few[1], oneMore[1]);
    ASSERT_EQ(many.size(), 2U);
    EXPECT_EQ(many[0].name, oneMoreThanMany[0].name);
    EXPECT_NE(many[0], oneMoreThanMany[0]);
}

}  // namespace
}  // namespace engine
