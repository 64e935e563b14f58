#include "views/ScreenView.h"

#include <QPainter>
#include <QResizeEvent>

#include "views/Palette.h"

namespace views {

namespace {

constexpr int barHeight = 40;
constexpr int shadowReach = 2;  // points above the panel in which the shadow shows
constexpr double shadowOpacity = 0.6;

// The line of shadow over the bar's lower edge. The panel masks it at its own bottom, and its sides lie outside the
// screen, so the line at the top is all there is to see.
class PanelShadow : public QWidget {
public:
    explicit PanelShadow(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_TransparentForMouseEvents); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QColor color = palette::panelShadow;
        for (int line = 0; line < shadowReach; ++line) {
            color.setAlphaF(float(shadowOpacity * (line + 1) / shadowReach));
            painter.fillRect(0, line, width(), 1, color);
        }
    }
};

}  // namespace

ScreenView::ScreenView(QWidget* bar, QWidget* content, int bodyHeight, int designHeight)
    : bar_(bar), panel_(new QWidget(this)), content_(content), spareHeight_(designHeight - barHeight - bodyHeight) {
    setAutoFillBackground(true);
    QPalette colours = QWidget::palette();
    colours.setColor(QPalette::Window, Qt::white);
    setPalette(colours);
    bar_->setParent(this);
    content_->setParent(panel_);
    shadow_ = new PanelShadow(this);
}

void ScreenView::resizeEvent(QResizeEvent* event) {
    const QSize size = event->size();
    bar_->setGeometry(0, 0, size.width(), barHeight);
    panel_->setGeometry(0, barHeight, size.width(), qMax(0, size.height() - barHeight - spareHeight_));
    content_->setGeometry(panel_->rect());
    shadow_->setGeometry(0, barHeight - shadowReach, size.width(), shadowReach);
}

}  // namespace views
