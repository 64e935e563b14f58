#pragma once

#include <climits>

#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"
#include "platform_ui/WindowTest.h"

struct RowCell : platform::TableViewCell {
    RowCell() : TableViewCell(QStringLiteral("Row")), field(new QLineEdit(contentView())) {
        field->setGeometry(16, 9, 200, 20);
        ++live;
    }
    ~RowCell() override { --live; }

    void setEditing(bool editing, bool animated) override {
        TableViewCell::setEditing(editing, animated);
        field->setEnabled(editing);
    }

    QLineEdit* field;
    static inline int live = 0;
};

// Two fixed rows, then numbered ones that can be deleted; remembers what it was told and every row it should not have
// been asked for.
class Rows : public platform::TableViewDataSource, public platform::TableViewDelegate {
public:
    using IndexPath = platform::IndexPath;
    using TableView = platform::TableView;

    explicit Rows(int initialCount) : count(initialCount) {}

    static int heightOf(int numberedRows) { return 2 * 50 + 3 + numberedRows * 50; }
    QString textOf(IndexPath path) const {
        if (!news.isEmpty()) return news;
        return nameOf({path.section, path.row + (path.section == 1 && path.row >= removedFrom_ ? 1 : 0)});
    }

    int numberOfSectionsInTableView(TableView&) override { return 2; }
    int numberOfRowsInSection(TableView&, int section) override { return section == 0 ? 2 : count; }
    platform::TableViewCell* cellForRowAtIndexPath(TableView& table, IndexPath path) override {
        ++asked;
        if (path.section > 1 || path.row < 0 || path.row >= numberOfRowsInSection(table, path.section)) ++badIndexes;
        auto* cell = static_cast<RowCell*>(table.dequeueReusableCell(QStringLiteral("Row")));
        if (!cell) {
            cell = new RowCell;
            QObject::connect(cell->field, &QLineEdit::editingFinished, [this, &table, cell] {
                const auto edited = table.indexPathForCell(cell);
                note(QStringLiteral("typed %1 into").arg(cell->field->text()), edited.value_or(IndexPath{1, -1}));
                if (edited) cell->field->setText(textOf(*edited));
                if (reloadsAfterEditing) table.reloadData();
            });
        }
        cell->field->setText(textOf(path));
        cell->setAccessibleName(textOf(path));
        return cell;
    }
    bool canEditRowAtIndexPath(TableView&, IndexPath path) override { return path.section == 1; }
    void commitEditingStyle(TableView& table, platform::EditingStyle, IndexPath path) override {
        note(QStringLiteral("deleted"), path);
        remove(path.row);
        table.deleteRow(path, platform::RowAnimation::left);
    }
    void didSelectRowAtIndexPath(TableView& table, IndexPath path) override {
        table.deselectRow(path, false);
        note(QStringLiteral("selected"), path);
    }
    int heightForRowAtIndexPath(TableView&, IndexPath) override { return 50; }
    int heightForFooterInSection(TableView&, int section) override { return section == 0 ? 3 : lastFooterHeight; }
    QWidget* viewForFooterInSection(TableView&, int section) override { return section == 0 ? new QWidget : nullptr; }

    void remove(int row) {
        --count;
        removedFrom_ = row;
    }
    void restore() {
        ++count;
        removedFrom_ = INT_MAX;
    }

    int count;
    QStringList told;  // such as "selected 3" and "deleted 3"
    QString news;      // what every row says from now on
    int lastFooterHeight = 0;
    bool reloadsAfterEditing = false;
    int asked = 0;
    int badIndexes = 0;

private:
    static QString nameOf(IndexPath path) {
        return (path.section == 0 ? QStringLiteral("fixed %1") : QStringLiteral("%1")).arg(path.row);
    }
    void note(const QString& what, IndexPath path) { told.append(what + u' ' + nameOf(path)); }

    int removedFrom_ = INT_MAX;
};

struct TableTest : WindowTest {
    // Counts the Escapes that nobody took: those would leave the screen.
    class Window : public QWidget {
    public:
        int escapes = 0;

    protected:
        void keyPressEvent(QKeyEvent* event) override { escapes += event->key() == Qt::Key_Escape ? 1 : 0; }
    };

    void TearDown() override { close(); }

    // A table of so many numbered rows; the one shown before goes.
    void show(int count) {
        close();
        rows = std::make_unique<Rows>(count);
        window = std::make_unique<Window>();
        window->resize(320, 500);
        table = std::make_unique<platform::TableView>(window.get());
        table->resize(window->size());
        table->setDataSource(rows.get());
        table->setDelegate(rows.get());
        bringToFront(*window);
    }
    void close() {
        table.reset();
        window.reset();
        EXPECT_EQ(RowCell::live, 0);
        EXPECT_EQ(rows ? rows->badIndexes : 0, 0);
    }

    std::unique_ptr<Rows> rows;
    std::unique_ptr<Window> window;
    std::unique_ptr<platform::TableView> table;
};
