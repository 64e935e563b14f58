#include "views/ScreenView.h"

#include <QPainter>
#include <QResizeEvent>

#include "views/Palette.h"

namespace views {

namespace {

constexpr int barHeight = 40;
constexpr int shadowReach = 2;  // height of the shadow above the panel, in points
constexpr double shadowOpacity = 0.6;

// The shadow along the bar's lower edge: the only visible side of the panel's shadow, drawn as two lines instead of a
// blur.
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
