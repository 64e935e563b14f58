#pragma once

#include <QPointer>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/ui/alert/AlertView.h"
#include "views/VxmTableScreen.h"

namespace screens {

// A list of the files in a folder, of which the person picks one to import after a question. The two lists differ in
// the folder, in what stands above the list, in the question and in what importing does.
class FileListScreen : public views::VxmTableScreen, public platform::AlertViewDelegate {
    Q_OBJECT
public:
    // `chrome` outlives the screen.
    FileListScreen(const views::Chrome& chrome, std::filesystem::path directory);

    // The names of the folder's entries when it was last listed, as bytes, in their order. Empty when the folder is
    // missing or cannot be read.
    const std::vector<std::string>& content() const { return content_; }
    // The entry that was picked last.
    const std::string& filename() const { return filename_; }

    // Lists the folder again.
    void reload();

    int numberOfRowsInSection(platform::TableView& table, int section) override;
    platform::TableViewCell* cellForRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    void didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;

    void didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) override;

protected:
    virtual QString barTitle() const = 0;
    // The title of the question before an import.
    virtual QString importQuestion(const QString& shownName) const = 0;
    // Whether importing puts something in the place of what was there.
    virtual bool importOverwrites() const = 0;
    // The person said yes. The path may lead to anything.
    virtual void importFile(const std::filesystem::path& file) = 0;
    // The content of the screen with the table in it; the table alone by default.
    virtual QWidget* makeContent(platform::TableView* table);

    void loadView() override;

    std::filesystem::path pathOf(const std::string& entry) const { return directory_ / entry; }
    // Removes an entry from content(), not from the folder.
    void forgetEntry(int row);

private:
    void listDirectory();

    std::filesystem::path directory_;
    std::vector<std::string> content_;
    std::string filename_;
    QPointer<platform::AlertView> importAlert_;
};

}  // namespace screens
