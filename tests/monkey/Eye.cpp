#include "monkey/Eye.h"

#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QTemporaryDir>
#include <QWidget>
#include <algorithm>
#include <vector>

#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"

namespace monkey::Eye {

namespace {

constexpr int aRow = 50;  // points

QList<platform::TableView*> tablesOf(platform::ViewController& screen) {
    QList<platform::TableView*> tables = screen.view()->findChildren<platform::TableView*>();
    tables.removeIf([](const platform::TableView* table) { return !table->isVisible(); });
    return tables;
}

bool isBusy(const platform::TableView& table) {
    bool isBusy = table.indexPathForCell(table.window()->focusWidget()).has_value();
    table.forEachCell(
        [&](platform::IndexPath, const platform::TableViewCell& cell) { isBusy = isBusy || cell.isOpeningAside(); });
    return isBusy;
}

// What has been painted, not what would be painted now.
QImage paintedPicture(const QWidget& window) {
    return window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

// The toolkit leaves a point behind where its cursor in a text of two directions was.
QImage withoutEditedField(QImage picture, const QWidget& window) {
    if (const auto* field = qobject_cast<QLineEdit*>(window.focusWidget()))
        QPainter(&picture).fillRect(QRect(field->mapTo(&window, QPoint()), field->size()), Qt::white);
    return picture;
}

// What would be painted now.
QImage pictureOf(QWidget& window) {
    return window.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// A row further down, where rows come into sight that were about to, as they are; then back where the tables were.
std::vector<QImage> picturesOf(QWidget& window, const QList<platform::TableView*>& tables) {
    std::vector<int> offsets;
    for (platform::TableView* table : tables) {
        offsets.push_back(table->contentOffset());
        table->setContentOffset(offsets.back() + aRow);
    }
    std::vector<QImage> pictures{pictureOf(window)};
    for (qsizetype i = 0; i < tables.size(); ++i) tables[i]->setContentOffset(offsets[std::size_t(i)]);
    pictures.push_back(pictureOf(window));
    return pictures;
}

std::string saved(const QImage& shown, const QImage& expected) {
    QTemporaryDir folder;
    folder.setAutoRemove(false);
    shown.save(folder.filePath(QStringLiteral("shown.png")));
    expected.save(folder.filePath(QStringLiteral("expected.png")));
    return folder.path().toStdString() + "/shown.png and expected.png";
}

}  // namespace

std::string lookAt(platform::ViewController& screen, const std::function<void()>& settle) {
    const QList<platform::TableView*> tables = tablesOf(screen);
    if (tables.isEmpty() || std::any_of(tables.begin(), tables.end(), [](auto* table) { return isBusy(*table); }))
        return {};
    QWidget& window = *screen.view()->window();
    const std::string name = screen.metaObject()->className();
    const QImage painted = withoutEditedField(paintedPicture(window), window);
    const QImage now = withoutEditedField(pictureOf(window), window);
    if (painted != now) return name + " has not painted all that it shows: " + saved(painted, now);
    const std::vector<QImage> shown = picturesOf(window, tables);
    for (platform::TableView* table : tables) table->reloadData();
    settle();
    const std::vector<QImage> anew = picturesOf(window, tables);
    const auto [different, other] = std::mismatch(shown.begin(), shown.end(), anew.begin());
    if (different == shown.end()) return {};
    return name + " does not look as when its tables are loaded anew: " + saved(*different, *other);
}

}  // namespace monkey::Eye
