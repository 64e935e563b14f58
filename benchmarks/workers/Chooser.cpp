#include <gio/gio.h>

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "benchmarks/workers/App.h"
#include "benchmarks/workers/Events.h"
#include "benchmarks/workers/Workers.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/table/TableView.h"

namespace bench {

namespace {

constexpr int frameMilliseconds = 16;
constexpr qint64 quietMilliseconds = 500;

double openChooserOf(App& app) {
    const auto* mainScreen = app.screen();
    const auto isInChooser = [&](const QWidget& painted) {
        return app.screen() != mainScreen && app.screen()->view()->isAncestorOf(&painted) &&
               anyOf("views::VxmAppCell")(painted);
    };
    QAbstractButton* add = app.button(QStringLiteral("Add"));
    return app.clock().untilPainted(isInChooser, [&] { tap(*add); });
}

}  // namespace

Figures openChooser(const Arguments& arguments) {
    App app(arguments.at(0));
    return {{"chooser", openChooserOf(app)}};
}

Figures listWithGlib(const Arguments& arguments) {
    setenv("XDG_DATA_DIRS", arguments.at(0).c_str(), 1);
    setenv("XDG_DATA_HOME", arguments.at(0).c_str(), 1);
    std::size_t listed = 0;
    const double seconds = secondsOf([&] {
        GList* applications = g_app_info_get_all();
        for (GList* each = applications; each; each = each->next)
            listed += g_app_info_get_display_name(static_cast<GAppInfo*>(each->data)) != nullptr;
        g_list_free_full(applications, g_object_unref);
    });
    if (listed == 0) throw std::runtime_error("GLib lists nothing");
    return {{"glib", seconds}};
}

// From top to bottom at sixty notches a second, while icons arrive; then until the last ones have.
Figures scrollUncachedIcons(const Arguments& arguments) {
    App app(arguments.at(0));
    openChooserOf(app);
    platform::TableView* table = app.table();
    const int bottom = table->contentHeight() - table->viewport()->height();
    QTimer wheel;
    QElapsedTimer atBottom;
    QObject::connect(&wheel, &QTimer::timeout, table, [&] {
        turnWheel(*table->viewport(), -1);
        if (table->contentOffset() < bottom) return;
        wheel.stop();
        atBottom.start();
    });
    wheel.setTimerType(Qt::PreciseTimer);
    wheel.start(frameMilliseconds);
    const std::vector<double> frames =
        app.clock().framesUntil([&] { return atBottom.isValid() && atBottom.elapsed() > quietMilliseconds; });
    return {{"longest", *std::max_element(frames.begin(), frames.end())}};
}

}  // namespace bench
