// What the service says about the daemon's configuration.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "engine/service/DaemonConfiguration.h"
#include "store/Files.h"

namespace {

TEST(DaemonConfigurationTest, SaysWhatToSet) {
    const std::string setAction = R"(Set "DefaultAction": "allow"; with )";
    const std::string setPath = R"(Set "Rules": {"Path": "/etc/daemon/rules"}; the daemon reads its rules from )";
    const struct {
        const char* what;
        std::optional<std::string> text;
        std::vector<std::string> beginnings;
    } cases[] = {
        {"as the daemon's package brings it",
         R"({"Server": {"Address":"unix:///tmp/socket"}, "DefaultAction": "allow", "Firewall": "iptables"})",
         {}},
        {"nothing set, which allows", "{}", {}},
        {"everything else denied", R"({"DefaultAction": "deny"})", {setAction + R"("deny")"}},
        {"our folder", R"({"Rules": {"Path": "/etc/daemon/rules"}})", {}},
        {"our folder in other words", R"({"Rules": {"Path": "/etc/./daemon/rules/"}})", {}},
        {"another folder, and denied",
         R"({"DefaultAction": "deny", "Rules": {"Path": "/srv/rules"}})",
         {setAction, setPath + R"("/srv/rules")"}},
        {"cut short", R"({"DefaultAction": "deny")", {"The daemon ignores it"}},
        {"no object", R"(["deny"])", {"The daemon ignores it"}},
        {"missing", std::nullopt, {"It cannot be read"}},
    };
    const store::TemporaryDirectory folder;
    for (const auto& [what, text, beginnings] : cases) {
        const auto file = folder / (std::string(what) + ".json");
        if (text) store::put(file, *text);
        const auto complaints = engine::complaintsAbout(file, "/etc/daemon/rules");
        ASSERT_EQ(complaints.size(), beginnings.size()) << what << testing::PrintToString(complaints);
        for (std::size_t i = 0; i < complaints.size(); ++i)
            EXPECT_TRUE(complaints[i].starts_with(beginnings[i])) << what << ": " << complaints[i];
    }
}

}  // namespace
