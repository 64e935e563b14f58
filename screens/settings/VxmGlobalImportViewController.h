#pragma once

#include "screens/settings/FileListScreen.h"

namespace store {
class ConfigurationStore;
}

namespace screens {

// Lists the host lists that came with the app or were put beside them; a picked one is appended to the global allow or
// deny list.
class VxmGlobalImportViewController : public FileListScreen {
    Q_OBJECT
public:
    // Both outlive the screen.
    VxmGlobalImportViewController(const views::Chrome& chrome, store::ConfigurationStore& store, bool isDeny);

    bool isDeny() const { return isDeny_; }

protected:
    QString barTitle() const override;
    QString importQuestion(const QString& shownName) const override;
    bool importOverwrites() const override { return false; }
    // A rule for every line of the text; the rules file is written even when the text cannot be read.
    void importFile(const std::filesystem::path& file) override;

private:
    store::ConfigurationStore& store_;
    bool isDeny_;
};

}  // namespace screens
