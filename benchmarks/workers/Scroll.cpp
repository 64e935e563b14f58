#include <QElapsedTimer>
#include <QScrollBar>
#include <functional>
#include <map>
#include <utility>

#include "benchmarks/workers/App.h"
#include "benchmarks/workers/Events.h"
#include "benchmarks/workers/Workers.h"
#include "platform/ui/controls/ScrollThumb.h"
#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/table/TableView.h"

namespace bench {

namespace {

// As far as even a hundred rows can be scrolled, there and back.
constexpr int notches = 28;
constexpr int pages = 8;
constexpr int rounds = 5;

void append(std::vector<double>& all, const std::vector<double>& some) {
    all.insert(all.end(), some.begin(), some.end());
}

// Scrolls the list of an app; gathers what its frames took.
class Scroller {
public:
    explicit Scroller(App& app) : app_(app), table_(*app.table()) {}

    void toTop() {
        pressKey(table_, Qt::Key_Home);
        app_.clock().settle();
    }

    std::vector<double> wheel() {
        return thereAndBack(notches, [this](bool there) { turnWheel(*table_.viewport(), there ? -1 : 1); });
    }

    std::vector<double> page() {
        table_.setFocus();
        return thereAndBack(pages, [this](bool there) { pressKey(table_, there ? Qt::Key_PageDown : Qt::Key_PageUp); });
    }

    // Flicks, which go on by themselves.
    std::vector<double> fling() {
        platform::AnimationClock::setInstant(false);
        std::vector<double> frames;
        for (const int direction : {-1, 1}) {
            app_.flick(direction);
            append(frames, framesWhileMoving());
        }
        platform::AnimationClock::setInstant(true);
        return frames;
    }

    // The thumb from end to end, far enough each time that all rows in sight are others.
    std::vector<double> thumb() {
        auto& thumb = *table_.findChild<platform::ScrollThumb*>();
        constexpr int step = 60;
        const int stops = (table_.height() - thumb.height()) / step;
        turnWheel(*table_.viewport(), -1);
        app_.clock().settle();
        QPoint grip = thumb.rect().center();
        press(thumb, grip);
        auto frames = thereAndBack(stops, [&](bool there) { moveTo(thumb, grip + QPoint(0, there ? step : -step)); });
        release(thumb, grip);
        return frames;
    }

private:
    std::vector<double> thereAndBack(int steps, const std::function<void(bool there)>& scroll) {
        std::vector<double> frames;
        const auto inTable = [this](const QWidget& painted) { return table_.isAncestorOf(&painted); };
        frames.reserve(2 * std::size_t(steps));
        for (int at = 0; at < 2 * steps; ++at)
            frames.push_back(app_.clock().untilPainted(inTable, [&] { scroll(at < steps); }));
        return frames;
    }

    std::vector<double> framesWhileMoving() {
        constexpr qint64 stoppedMilliseconds = 100;
        QElapsedTimer resting;
        resting.start();
        int offset = table_.contentOffset();
        return app_.clock().framesUntil([&] {
            if (offset != table_.contentOffset()) resting.restart();
            offset = table_.contentOffset();
            return resting.elapsed() > stoppedMilliseconds;
        });
    }

    App& app_;
    platform::TableView& table_;
};

}  // namespace

Figures scrollRuleList(const Arguments& arguments) {
    qputenv("QT_SCALE_FACTOR", arguments.at(1).c_str());
    App app(arguments.at(0));
    app.openDenyList();
    Scroller scroller(app);
    using Way = std::vector<double> (Scroller::*)();
    const std::array<std::pair<const char*, Way>, 4> ways{{{"wheel", &Scroller::wheel},
                                                           {"fling", &Scroller::fling},
                                                           {"page", &Scroller::page},
                                                           {"thumb", &Scroller::thumb}}};
    // A shared machine may take twice as long for everything, for seconds on end. So each way has its turn again and
    // again, and the mean of its frames is compared: which of two kinds of seconds had most, a median would say.
    std::map<std::string, std::vector<double>> frames;
    std::vector<double> all;
    for (int round = 0; round < rounds; ++round) {
        for (const auto& [name, way] : ways) {
            scroller.toTop();
            append(frames[name], (scroller.*way)());
        }
    }
    Figures figures;
    for (const auto& [name, some] : frames) {
        figures[name] = mean(some);
        append(all, some);
    }
    figures["all"] = median(std::move(all));
    return figures;
}

}  // namespace bench
