// SVG icons, drawn by a process of its own. A picture may end that process, and then is none; the next one is drawn.
#include <QCoreApplication>

#include "fuzz/Target.h"
#include "platform/system/IconImage.h"
#include "store/Files.h"

namespace fuzz {

namespace {

QImage drawn(std::string_view svg) {
    // The process is looked for beside the application.
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static const store::TemporaryDirectory directory;
    store::put(directory / "icon.svg", svg);
    return platform::readIcon(directory / "icon.svg", 29, 2);
}

}  // namespace

bool accepts(std::string_view bytes) {
    static constexpr std::string_view good =
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1 1'><path d='M0 0h1v1z'/></svg>";
    static const QImage expected = drawn(good);
    demand(expected.size() == QSize(58, 58), "nothing can be drawn");
    const QImage icon = drawn(bytes);
    demand(icon.isNull() || icon.size() == expected.size(), "an icon has another size");
    demand(drawn(good) == expected, "the next picture is another");
    return !icon.isNull();
}

}  // namespace fuzz
