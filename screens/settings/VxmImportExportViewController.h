#pragma once

#include "screens/settings/FileListScreen.h"

namespace store {
class ConfigurationStore;
}

namespace screens {

// Saves the whole configuration into one file of the export directory and lists that directory: a tapped file is
// written back over the configuration, a swiped one deleted.
class VxmImportExportViewController : public FileListScreen {
    Q_OBJECT
public:
    // Both outlive the screen.
    VxmImportExportViewController(const views::Chrome& chrome, store::ConfigurationStore& store);

    // Writes an export file, called after the local time in ASCII digits whatever the locale, so that a file's name
    // means the same on every device. Then lists the directory again.
    void exportSettings();

    bool canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    platform::EditingStyle editingStyleForRowAtIndexPath(platform::TableView& table,
                                                         platform::IndexPath indexPath) override;
    // Deletes the file, or the folder with all that is in it; links are removed, not followed.
    void commitEditingStyle(platform::TableView& table, platform::EditingStyle style,
                            platform::IndexPath indexPath) override;

protected:
    QString barTitle() const override;
    QString importQuestion(const QString& shownName) const override;
    bool importOverwrites() const override { return true; }
    // Replaces each configuration file that the export file holds. Adds no marker entry and tells nobody.
    void importFile(const std::filesystem::path& file) override;
    QWidget* makeContent(platform::TableView* table) override;

private:
    store::ConfigurationStore& store_;
};

}  // namespace screens
