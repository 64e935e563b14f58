#include "store/SharedFiles.h"

#include <string_view>

namespace store {

namespace {

std::string_view nameOf(File file) {
    switch (file) {
        case File::appRules:
            return "com.Urmeld.FirewallRules2.plist";
        case File::globalRules:
            return "com.Urmeld.FirewallGlobalRules2.plist";
        case File::guiSettings:
            break;
    }
    return "com.Urmeld.FirewallSettings2.plist";
}

}  // namespace

std::filesystem::path preferencesFolder(const std::filesystem::path& root) {
    return root / "var/mobile/Library/Preferences";
}

std::filesystem::path pathOf(File file, const std::filesystem::path& root) {
    return preferencesFolder(root) / nameOf(file);
}

std::filesystem::path disabledMarker(const std::filesystem::path& root) {
    return preferencesFolder(root) / "com.Urmeld.Firewall.disabled";
}

std::filesystem::path logFile(const std::filesystem::path& root) {
    return preferencesFolder(root) / "com.Urmeld.Firewall.Log.txt";
}

std::filesystem::path listFolder(const std::filesystem::path& root) {
    return root / "Applications/VexmorGUI.app/Lists";
}

}  // namespace store
