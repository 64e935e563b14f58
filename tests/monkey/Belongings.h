#pragma once

#include <unistd.h>
#include <QtWidgets>

#include <array>
#include <filesystem>
#include <fstream>

namespace monkey {

// What the process holds of the system's, and of widgets: the same again whenever the app is gone.
struct Belongings {
    std::vector<std::string> threads, descriptors, widgets;  // by their names

    std::array<std::size_t, 3> counts() const { return {threads.size(), descriptors.size(), widgets.size()}; }
    bool operator==(const Belongings& other) const { return counts() == other.counts(); }

    static Belongings now() {
        Belongings held;
        for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
            std::string name;
            std::getline(std::ifstream(thread.path() / "comm"), name);
            // The toolkit's own, for painting: they come and go as it likes.
            if (!name.empty() && name != "Thread (pooled)") held.threads.push_back(name);
        }
        for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code isClosed;  // the one that the listing itself took
            const std::string target = std::filesystem::read_symlink(descriptor.path(), isClosed);
            // Every thread of the toolkit's has one, those not counted included.
            if (target != "anon_inode:[eventfd]") held.descriptors.push_back(target);
        }
        // But for the one that stands for the whole desktop and that the toolkit makes when a press leaves the window.
        for (const QWidget* widget : QApplication::allWidgets())
            if (widget->windowType() != Qt::Desktop) held.widgets.emplace_back(widget->metaObject()->className());
        return held;
    }

    // Threads that are about to end are given time for it.
    static Belongings atRest(const Belongings& expected) {
        constexpr int patience = 1000;  // looks, each after a while of real time
        constexpr useconds_t aWhile = 2000;
        Belongings held = now();
        for (int looks = 0; looks < patience && held != expected; ++looks) {
            usleep(aWhile);
            QCoreApplication::processEvents();
            held = now();
        }
        return held;
    }

    // All there are, by name.
    std::string text() const {
        std::string text;
        for (const auto& [what, names] :
             {std::pair(" threads:", threads), {" descriptors:", descriptors}, {" widgets:", widgets}}) {
            text += " " + std::to_string(names.size()) + what;
            for (const std::string& name : names) text += " " + name;
        }
        return text;
    }
};

}  // namespace monkey
