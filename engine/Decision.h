#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/HostPattern.h"
#include "store/plist/PropertyList.h"

namespace engine {

// What the shared files hold. A file that is missing or unreadable is an empty dictionary: nothing is configured.
struct Configuration {
    store::Dictionary appRules;
    store::Dictionary globalRules;
    bool isDisabled = false;  // the disabled marker exists
};

struct Connection {
    std::string app;  // its identifier, the key of its record
    Destination destination;
    bool isOnWiFi = true;
};

enum class Verdict { leave, allow, deny };  // leave: whatever else is configured on the machine decides

// What decides, in the order in which it is asked: the first that applies.
enum class Cause {
    firewallOff,       // leave
    notUnderFirewall,  // leave: the app has no record
    appOff,            // leave
    appNeedsWiFi,      // deny
    allNeedWiFi,       // deny
    ownRule,           // allow or deny
    denyAll,           // deny
    globalRule,        // allow or deny
    allowAll,          // allow
    nothing            // leave
};

struct Decision {
    Verdict verdict = Verdict::leave;
    Cause cause = Cause::nothing;
    std::string rule;  // the entry that decides, as it stands in its list; of ownRule and globalRule alone

    bool operator==(const Decision&) const = default;
};

// What the switches say about an app's connections, before any list is asked; in the order of the causes.
struct Policy {
    std::optional<Cause> leaves;  // firewallOff, notUnderFirewall or appOff: nothing else holds then
    std::optional<Cause> denies;  // appNeedsWiFi or allNeedWiFi: nothing else holds then
    bool usesOwnLists = false;
    bool deniesAll = false;
    bool usesGlobalLists = false;
    bool allowsAll = false;
};
Policy policyOf(const Configuration& configuration, std::string_view app, bool isOnWiFi);

// What the configuration says about a connection; docs/engine-contract.md has the order as a table. Of all entries of
// an allow and deny list that match, the closest decides, and of equally close ones one that denies. A pure function,
// any thread; takes the time of reading the lists that it comes to.
Decision decide(const Configuration& configuration, const Connection& connection);

}  // namespace engine
