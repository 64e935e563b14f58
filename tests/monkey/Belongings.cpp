#include "monkey/Belongings.h"

#include <unistd.h>

#include <QApplication>
#include <filesystem>
#include <fstream>
#include <vector>

namespace monkey {

namespace {

constexpr int patience = 1000;  // looks, each after a while of real time
constexpr useconds_t aWhile = 2000;

std::vector<std::string> threadNames() {
    std::vector<std::string> names;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::getline(std::ifstream(thread.path() / "comm"), name);
        // The toolkit's own, for painting: they come and go as it likes.
        if (!name.empty() && name != "Thread (pooled)") names.push_back(name);
    }
    return names;
}

std::vector<std::string> descriptorNames() {
    std::vector<std::string> targets;
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code isClosed;  // the one that the listing itself took
        std::string target = std::filesystem::read_symlink(descriptor.path(), isClosed);
        // Every thread of the toolkit's has one, those not counted included.
        if (target != "anon_inode:[eventfd]") targets.push_back(std::move(target));
    }
    return targets;
}

// But for the one that stands for the whole desktop and that the toolkit makes when a press leaves the window.
QWidgetList allOfThem() {
    QWidgetList all = QApplication::allWidgets();
    all.removeIf([](const QWidget* widget) { return widget->windowType() == Qt::Desktop; });
    return all;
}

std::string joined(const std::vector<std::string>& names) {
    std::string text = std::to_string(names.size()) + " (";
    for (const std::string& name : names) text += name + (&name == &names.back() ? ")" : ", ");
    return text;
}

}  // namespace

Belongings Belongings::now() {
    return {long(threadNames().size()), long(descriptorNames().size()), allOfThem().size()};
}

Belongings Belongings::atRest(const Belongings& expected) {
    Belongings held = now();
    for (int looks = 0; looks < patience && held != expected; ++looks) {
        usleep(aWhile);
        QCoreApplication::processEvents();
        held = now();
    }
    return held;
}

std::string Belongings::listed() {
    std::string text =
        "threads: " + joined(threadNames()) + ", descriptors: " + joined(descriptorNames()) + ", widgets:";
    for (const QWidget* widget : allOfThem()) text += std::string(" ") + widget->metaObject()->className();
    return text;
}

std::string Belongings::text() const {
    return std::to_string(threads) + " threads, " + std::to_string(descriptors) + " descriptors, " +
           std::to_string(widgets) + " widgets";
}

}  // namespace monkey
