#include "platform/ui/table/CellDeletion.h"

#include <QPainter>
#include <algorithm>

#include "platform/ui/drawing/Palette.h"

namespace platform {

namespace {

constexpr double seconds = 0.2;
using palette::pressedRed;
using palette::red;

class DeleteButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), isDown() ? pressedRed : red);
        painter.setPen(Qt::white);
        painter.drawText(rect(), Qt::AlignCenter, text());
    }
};

class RoundControl : public QAbstractButton {
public:
    using QAbstractButton::QAbstractButton;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPointF centre = QRectF(rect()).center() + QPointF(4, 0);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? pressedRed : red);
        painter.drawEllipse(centre, 10, 10);
        painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(centre - QPointF(4.5, 0), centre + QPointF(4.5, 0));
    }
};

}  // namespace

CellDeletion::CellDeletion(QWidget* cell, const std::function<void()>& moved)
    : controlButton_(new RoundControl(cell)),
      deleteButton_(new DeleteButton(QStringLiteral("Delete"), cell)),
      control_(cell, moved),
      uncovered_(cell, moved) {
    controlButton_->setAccessibleName(QStringLiteral("Remove"));
    deleteButton_->setAccessibleName(deleteButton_->text());
    for (QAbstractButton* button : {controlButton_, static_cast<QAbstractButton*>(deleteButton_)}) {
        button->setFocusPolicy(Qt::NoFocus);
        button->hide();
    }
}

void CellDeletion::showControl(bool shown, bool animated) {
    const int width = shown ? controlWidth : 0;
    if (animated) {
        control_.glideTo(width, seconds);
    } else {
        control_.set(width);
    }
}

void CellDeletion::uncover(int points) {
    uncovered_.set(points);
}

void CellDeletion::glideTo(int points) {
    uncovered_.glideTo(points, seconds);
}

void CellDeletion::layout(QSize cell) {
    controlButton_->setGeometry(controlShift() - controlWidth - uncovered(), 0, controlWidth, cell.height());
    controlButton_->setVisible(controlShift() > 0);
    deleteButton_->setGeometry(cell.width() - uncovered(), 0, std::max(buttonWidth, uncovered()), cell.height());
    deleteButton_->setVisible(uncovered() > 0);
    deleteButton_->raise();
}

}  // namespace platform
