#include "screens/settings/DirectoryListing.h"

#include <algorithm>
#include <system_error>

#include "store/files/Temporaries.h"

namespace screens {

std::vector<std::string> entriesOf(const std::filesystem::path& directory) {
    std::vector<std::string> names;
    std::error_code failed;
    std::filesystem::directory_iterator entry(directory, failed);
    for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
        std::string name = entry->path().filename();
        if (!store::isTemporaryName(name)) names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    return names;
}

QString shownName(const std::string& entry) {
    QString name = QString::fromStdString(entry);
    for (QChar& character : name) {
        const bool endsLine = character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
        if (endsLine || character.category() == QChar::Other_Control) character = QChar::ReplacementCharacter;
    }
    return name;
}

}  // namespace screens
