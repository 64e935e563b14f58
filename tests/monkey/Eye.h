#pragma once

#include <QtWidgets>
#include <algorithm>
#include <functional>

#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"

namespace monkey {

// Sees what a person sees. A table keeps its cells while what they show changes, so a screen at rest must look as if
// its tables had just been loaded: all that has happened has reached every cell that came into sight.
class Eye {
public:
    explicit Eye(platform::ViewController& screen)
        : screen_(screen), window_(*screen.view()->window()), tables_(screen.view()->findChildren<Table*>()) {
        tables_.removeIf([](const Table* table) { return !table->isVisible(); });
    }

    // Loads the tables of a screen at rest anew. The finding names the two pictures that should have been one; it is
    // empty when all is well, and while a row is edited or pushed aside, which ends when its table is loaded. `settle`
    // lets what the loading has begun come to its end.
    std::string look(const std::function<void()>& settle) const {
        if (tables_.isEmpty() || std::any_of(tables_.begin(), tables_.end(), isBusy)) return {};
        // What has been painted, and what would be painted now.
        const QImage painted = withoutEditedField(window_.screen()->grabWindow(window_.winId()));
        const QImage now = withoutEditedField(window_.grab());
        if (painted != now) return finding("has not painted all that it shows", painted, now);
        const std::vector<QImage> shown = pictures();
        for (Table* table : tables_) table->reloadData();
        settle();
        const std::vector<QImage> anew = pictures();
        const auto [different, other] = std::mismatch(shown.begin(), shown.end(), anew.begin());
        if (different == shown.end()) return {};
        return finding("does not look as when its tables are loaded anew", *different, *other);
    }

private:
    using Table = platform::TableView;

    static bool isBusy(const Table* table) {
        bool isBusy = table->indexPathForCell(table->window()->focusWidget()).has_value();
        table->forEachCell(
            [&](auto, const platform::TableViewCell& cell) { isBusy = isBusy || cell.isOpeningAside(); });
        return isBusy;
    }

    static QImage imageOf(const QPixmap& picture) { return picture.toImage().convertToFormat(QImage::Format_RGB32); }

    // The toolkit leaves a point behind where its cursor in a text of two directions was.
    QImage withoutEditedField(const QPixmap& shown) const {
        QImage picture = imageOf(shown);
        if (const auto* field = qobject_cast<QLineEdit*>(window_.focusWidget()))
            QPainter(&picture).fillRect(QRect(field->mapTo(&window_, QPoint()), field->size()), Qt::white);
        return picture;
    }

    // A row further down, where rows come into sight that were about to, as they are; then back where the tables were.
    std::vector<QImage> pictures() const {
        constexpr int aRow = 50;  // points
        std::vector<int> offsets;
        for (const Table* table : tables_) offsets.push_back(table->contentOffset());
        std::vector<QImage> pictures;
        for (const int further : {aRow, 0}) {
            for (qsizetype i = 0; i < tables_.size(); ++i)
                tables_[i]->setContentOffset(offsets[std::size_t(i)] + further);
            pictures.push_back(imageOf(window_.grab()));
        }
        return pictures;
    }

    std::string finding(const char* what, const QImage& shown, const QImage& expected) const {
        QTemporaryDir folder;
        folder.setAutoRemove(false);
        shown.save(folder.filePath(QStringLiteral("shown.png")));
        expected.save(folder.filePath(QStringLiteral("expected.png")));
        return std::string(screen_.metaObject()->className()) + " " + what + ": " + folder.path().toStdString() +
               "/shown.png and expected.png";
    }

    platform::ViewController& screen_;
    QWidget& window_;
    QList<Table*> tables_;
};

}  // namespace monkey
