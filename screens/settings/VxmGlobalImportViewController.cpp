#include "screens/settings/VxmGlobalImportViewController.h"

#include <memory>
#include <utility>

#include "screens/settings/HostListText.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "store/files/FileReading.h"
#include "store/rules/AppendedRules.h"

namespace screens {

namespace {

std::optional<std::string> readHostList(const std::filesystem::path& path) {
    const auto file = store::readFile(path);
    return file ? hostListText(file->view()) : std::nullopt;
}

}  // namespace

VxmGlobalImportViewController::VxmGlobalImportViewController(const views::Chrome& chrome,
                                                             store::ConfigurationStore& store, bool isDeny)
    : FileListScreen(chrome, store.listDirectory()), store_(store), isDeny_(isDeny) {}

QString VxmGlobalImportViewController::barTitle() const {
    return QStringLiteral("Import");
}

QString VxmGlobalImportViewController::importQuestion(const QString&) const {
    return QStringLiteral("Do you want to import rules from this file?");
}

void VxmGlobalImportViewController::importFile(const std::filesystem::path& path) {
    auto lines = readHostList(path);
    const std::string_view key = isDeny_ ? store::keys::globalDeny : store::keys::globalAllow;
    store_.change(store::writers::listImport, [&](store::Dictionary& rules) {
        const store::Value* list = rules.find(key);
        const bool isThere = list && list->kind() == store::Kind::array;
        if (lines) {
            rules.set(key, store::Value(std::make_shared<store::AppendedRules>(list, *std::move(lines))));
        } else if (!isThere) {
            rules.set(key, store::Value(store::Array()));
        }
    });
}

}  // namespace screens
