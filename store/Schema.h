#pragma once

#include <array>
#include <string>
#include <string_view>

#include "store/plist/PropertyList.h"
#include "store/rules/RuleEntryKeys.h"

namespace store {

// The keys of the shared files and the meaning of their values, absent ones and ones of the wrong kind included.

namespace keys {

inline constexpr std::string_view marker = "150";
inline constexpr std::string_view gameCenterDaemon = "com.apple.gamed";

// App rule record.
inline constexpr std::string_view allow = "allow";
inline constexpr std::string_view deny = "deny";
inline constexpr std::string_view allowEverything = "allowEverything";
inline constexpr std::string_view stillUseRules = "stillUseRules";
inline constexpr std::string_view blockSpecificWiFi = "blockSpecificWiFi";
inline constexpr std::string_view enabled = "enabled";
// Those that AppRuleRecord::flag() reads.
inline constexpr std::array appSwitches{stillUseRules, blockSpecificWiFi};

// Global rules file.
inline constexpr std::string_view globalAllow = "globalAllow";
inline constexpr std::string_view globalDeny = "globalDeny";
inline constexpr std::string_view blockNonWiFi = "blockNonWiFi";
inline constexpr std::string_view respectGlobal = "respectGlobal";
inline constexpr std::string_view log = "log";
inline constexpr std::string_view denyTabFront = "denyTabFront";
inline constexpr std::array globalSwitches{blockNonWiFi, respectGlobal, log, denyTabFront};

// GUI settings file.
inline constexpr std::string_view showAllowHelp = "showAllowHelp";
inline constexpr std::string_view didShowEditAlert = "didShowEditAlert";

// Export file.
inline constexpr std::string_view appRules = "appRules";
inline constexpr std::string_view globalRules = "globalRules";
inline constexpr std::string_view settings = "settings";

}  // namespace keys

enum class BlanketMode { neither, allowAll, denyAll };

// An app's record in the app rules file, where its key is the bundle identifier: typed access to the known keys, with
// their defaults. Other keys are preserved.
class AppRuleRecord {
public:
    // The app's record; empty when there is none or it is no dictionary.
    static AppRuleRecord of(const Dictionary& appRulesFile, std::string_view bundleIdentifier);
    // The record of an app that has just been put under the firewall.
    static AppRuleRecord fresh();

    bool enabled() const;
    void setEnabled(bool enabled);
    BlanketMode blanketMode() const;
    void setBlanketMode(BlanketMode mode);
    // One of keys::appSwitches: absent is false, any value but false is true.
    bool flag(std::string_view key) const;
    void setFlag(std::string_view key, bool on);

    const Dictionary& dictionary() const { return dictionary_; }
    Dictionary& dictionary() { return dictionary_; }
    void storeIn(Dictionary& appRulesFile, std::string_view bundleIdentifier) const;

private:
    Dictionary dictionary_;
};

// Whether the value of a flag of the GUI settings file is the Boolean true.
bool isTrue(const Dictionary& dictionary, std::string_view key);
// The state of a global switch, see Value::boolValue(); false when absent.
bool boolValue(const Dictionary& dictionary, std::string_view key);

}  // namespace store
