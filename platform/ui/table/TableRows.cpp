#include "platform/ui/table/TableRows.h"

#include "platform/ui/table/TableViewPrivate.h"

namespace platform {

int TableRows::count() const {
    return table_.d_->geometry.totalRows();
}

IndexPath TableRows::at(int position) const {
    return table_.d_->geometry.atOrdinal(position);
}

int TableRows::positionOf(IndexPath path) const {
    return table_.d_->geometry.ordinal(path);
}

std::optional<int> TableRows::positionAt(QPoint point) const {
    const auto path = table_.d_->cells.rowAt(point);
    return path ? std::optional(positionOf(*path)) : std::nullopt;
}

std::optional<int> TableRows::focused() const {
    const auto& current = table_.d_->current;
    return table_.hasFocus() && current ? std::optional(positionOf(*current)) : std::nullopt;
}

void TableRows::withCell(int position, const std::function<void(const TableViewCell&)>& ask) const {
    table_.d_->withCell(at(position), ask);
}

bool TableRows::canSelect() const {
    return table_.d_->canSelect();
}

bool TableRows::canDelete(int position) const {
    return table_.d_->canDelete(at(position));
}

void TableRows::focus(int position) const {
    table_.d_->moveCurrentTo(at(position));
}

void TableRows::select(int position) const {
    focus(position);
    table_.d_->select(at(position));
}

void TableRows::toggle(int position) const {
    focus(position);
    table_.d_->toggle(at(position));
}

void TableRows::remove(int position) const {
    table_.d_->commitDeletion(at(position));
}

}  // namespace platform
