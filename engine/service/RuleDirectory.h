#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "engine/translation/DaemonRule.h"

namespace engine {

// The daemon's folder of rules, brought from one set of rules of ours to another while the daemon reads it. Other
// makers' rules are not touched; ours are known by their names.
//
// What both sets deny is denied at every moment: first come the new rules that deny, then those that allow come and go,
// and the old ones that deny go last. In each set an allowing rule stands behind the denying one that beats it, so it
// does in any mixture that has all of both sets' denying ones. A process killed on the way leaves such a mixture, which
// the next one brings to its end. A connection that both sets allow may be denied for the moment between.
//
// A file of hosts is replaced while its rule stays, and the daemon looks at it every 4 s; that of a rule that is new it
// reads after a while. So a step that changed either is followed by a pause, and hosts that join a file have a rule of
// their own until then, which is in effect at once. What cannot be read is not replaced: it may be what denies.
//
// One thread.
class RuleDirectory {
public:
    // `rules` is the daemon's folder; `hosts` takes a folder for each rule with a file of hosts. Both must exist.
    RuleDirectory(std::filesystem::path rules, std::filesystem::path hosts);

    // Begins to bring the folder to these rules, which replaces what was begun before. Call step() next.
    void bringTo(std::vector<DaemonRule> rules);

    // Leaves the folder between two sets, and lets go of the one that it was to be brought to. Call bringTo() next.
    void abandon();

    // Whether the rules of the last bringTo() are to have this file in the daemon's folder: when it goes, begin anew.
    // The daemon itself may remove it, when it hears late that a rule of the same name had gone.
    bool wants(std::string_view fileName) const;

    // Does the next step. Returns after how long the one after it is due, at least; nothing when everything is done or
    // this step has failed. After a failure the folder is in a state between, as above; begin anew later.
    std::optional<std::chrono::milliseconds> step(std::error_code& failure);

private:
    enum class Stage { newDenials, allowances, oldDenials, done };

    void addNewDenials();
    void changeAllowances();
    void removeOldDenials();

    void putHosts(const DaemonRule& rule, bool keepsOld);
    void putTransitional(const DaemonRule& rule, const std::vector<std::string>& added);
    void putRule(const DaemonRule& rule);
    void remove(bool denying);
    void removeUnusedHosts();
    void note(std::error_code error);

    std::filesystem::path ruleFile(const std::string& name) const;
    std::filesystem::path hostFolder(const DaemonRule& rule) const;

    std::filesystem::path rules_;
    std::filesystem::path hosts_;
    std::vector<DaemonRule> wanted_;
    std::set<std::string, std::less<>> files_;  // of the wanted rules, also when these are let go of
    std::set<std::string> transitional_;        // rules that hold until the daemon has read the changed files
    Stage stage_ = Stage::done;
    std::optional<std::chrono::steady_clock::time_point> hostChange_;  // the last one of a file of hosts or its rule
    std::error_code failure_;                                          // the first of this step
};

}  // namespace engine
