#include "screens/settings/VxmImportExportViewController.h"

#include <QDateTime>
#include <array>
#include <system_error>

#include "platform/ui/controls/ImageButton.h"
#include "screens/settings/ExportPanel.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "store/plist/PropertyListFile.h"
#include "store/rules/RuleFile.h"

namespace screens {

namespace {

// A configuration file and its place in an export file.
struct ExportedFile {
    std::string_view key;
    store::File file;
};

constexpr std::array exportedFiles{
    ExportedFile{store::keys::appRules, store::File::appRules},
    ExportedFile{store::keys::globalRules, store::File::globalRules},
    ExportedFile{store::keys::settings, store::File::guiSettings},
};

std::string exportFileName() {
    const QString timestamp = QDateTime::currentDateTime().toString(u"yyyy-MM-dd_HH-mm-ss");
    return "VxmSettings-" + timestamp.toStdString() + ".plist";
}

}  // namespace

VxmImportExportViewController::VxmImportExportViewController(const views::Chrome& chrome,
                                                             store::ConfigurationStore& store)
    : FileListScreen(chrome, store.exportDirectory()), store_(store) {}

QString VxmImportExportViewController::barTitle() const {
    return QStringLiteral("Import/Export");
}

QWidget* VxmImportExportViewController::makeContent(platform::TableView* table) {
    auto* panel = new ExportPanel(chrome(), table);
    connect(panel->exportButton(), &platform::ImageButton::clicked, this,
            &VxmImportExportViewController::exportSettings);
    return panel;
}

void VxmImportExportViewController::exportSettings() {
    store::Dictionary all;
    for (const auto& [key, file] : exportedFiles) {
        if (auto dictionary = store_.read(file)) all.set(key, store::Value(*std::move(dictionary)));
    }
    if (!all.empty()) store::writeDictionary(pathOf(exportFileName()), all);
    reload();
}

QString VxmImportExportViewController::importQuestion(const QString& shownName) const {
    return QStringLiteral("Do you want to import Settings from ") + shownName +
           QStringLiteral("? All current settings will be overwritten!!!");
}

void VxmImportExportViewController::importFile(const std::filesystem::path& path) {
    const auto all = store::readRuleFile(path);
    if (!all) return;
    for (const auto& [key, file] : exportedFiles) {
        const store::Value* stored = all->find(key);
        const auto dictionary = stored ? stored->dictionary() : std::nullopt;
        if (dictionary) store_.replace(file, *dictionary);
    }
}

bool VxmImportExportViewController::canEditRowAtIndexPath(platform::TableView&, platform::IndexPath) {
    return true;
}

platform::EditingStyle VxmImportExportViewController::editingStyleForRowAtIndexPath(platform::TableView&,
                                                                                    platform::IndexPath) {
    return platform::EditingStyle::remove;
}

void VxmImportExportViewController::commitEditingStyle(platform::TableView& table, platform::EditingStyle style,
                                                       platform::IndexPath indexPath) {
    if (style != platform::EditingStyle::remove) return;
    std::error_code ignored;
    std::filesystem::remove_all(pathOf(content().at(std::size_t(indexPath.row))), ignored);
    forgetEntry(indexPath.row);
    table.deleteRow(indexPath, platform::RowAnimation::right);
}

}  // namespace screens
