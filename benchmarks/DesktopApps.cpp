#include "benchmarks/DesktopApps.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <array>
#include <fstream>

#include "benchmarks/Random.h"
#include "benchmarks/Texts.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

constexpr std::array languages{"ar", "bg", "ca", "cs", "da", "de", "el", "es", "et", "fi", "fr", "he", "hu",
                               "it", "ja", "ko", "nb", "nl", "pl", "pt", "ru", "sk", "sv", "tr", "uk", "zh_CN"};
constexpr std::array pngSizes{48, 64, 128, 256};

void writeEntry(const fs::path& file, const std::string& identifier, const std::string& name) {
    std::ofstream entry(file);
    entry << "[Desktop Entry]\nVersion=1.0\nType=Application\nName=" << name << '\n';
    for (const char* language : languages) entry << "Name[" << language << "]=" << name << ' ' << language << '\n';
    entry << "Comment=Do with " << name << " what one does with it\n";
    for (const char* language : languages) entry << "Comment[" << language << "]=" << name << ", " << language << '\n';
    // Some lists leave out what could not be run, so this can.
    entry << "Exec=true %U\nIcon=" << identifier << "\nTerminal=false\nCategories=Network;Utility;\n"
          << "MimeType=text/plain;text/html;\nStartupNotify=true\n";
}

QColor colour(Random& random) {
    return QColor::fromHsv(int(random.below(360)), 160, 200);
}

void drawIcon(const fs::path& file, int size, Random& random) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int shape = 0; shape < 5; ++shape) {
        QLinearGradient gradient(0, 0, size, size);
        gradient.setColorAt(0, colour(random));
        gradient.setColorAt(1, colour(random));
        painter.setBrush(gradient);
        const int inset = shape * size / 12;
        painter.drawEllipse(inset, inset / 2, size - 2 * inset, size - 2 * inset);
    }
    painter.end();
    image.save(QString::fromStdString(file.string()));
}

void writeVectorIcon(const fs::path& file, Random& random) {
    std::ofstream svg(file);
    svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 64 64\"><defs><linearGradient id=\"g\">"
        << "<stop offset=\"0\" stop-color=\"" << colour(random).name().toStdString() << "\"/><stop offset=\"1\" "
        << "stop-color=\"" << colour(random).name().toStdString() << "\"/></linearGradient></defs>"
        << "<rect x=\"2\" y=\"2\" width=\"60\" height=\"60\" rx=\"12\" fill=\"url(#g)\"/>";
    for (int path = 0; path < 12; ++path) {
        svg << "<path fill=\"" << colour(random).name().toStdString() << "\" opacity=\"0.8\" d=\"M" << random.below(64)
            << ' ' << random.below(64);
        for (int curve = 0; curve < 4; ++curve) {
            svg << 'C';
            for (int coordinate = 0; coordinate < 6; ++coordinate) svg << random.below(64) << ' ';
        }
        svg << "Z\"/>";
    }
    svg << "</svg>\n";
}

// Three in four are PNG files, of the sizes in turn.
void writeIcon(const fs::path& theme, const std::string& identifier, std::size_t number, Random& random) {
    if (number % 4 == 3) {
        writeVectorIcon(theme / "scalable/apps" / (identifier + ".svg"), random);
        return;
    }
    const int size = pngSizes[number / 4 % pngSizes.size()];
    const std::string folder = std::to_string(size) + 'x' + std::to_string(size);
    drawIcon(theme / folder / "apps" / (identifier + ".png"), size, random);
}

void writeTheme(const fs::path& theme) {
    std::ofstream index(theme / "index.theme");
    std::string directories;
    std::string sections;
    for (const int size : pngSizes) {
        const std::string folder = std::to_string(size) + 'x' + std::to_string(size) + "/apps";
        fs::create_directories(theme / folder);
        directories += folder + ',';
        sections += '[' + folder + "]\nSize=" + std::to_string(size) + "\nType=Threshold\n";
    }
    fs::create_directories(theme / "scalable/apps");
    index << "[Icon Theme]\nName=Hicolor\nDirectories=" << directories << "scalable/apps\n"
          << sections << "[scalable/apps]\nSize=128\nMinSize=8\nMaxSize=512\nType=Scalable\n";
}

}  // namespace

std::vector<std::string> installApps(const fs::path& root, std::size_t count) {
    const fs::path theme = root / "usr/share/icons/hicolor";
    writeTheme(theme);
    Random random(count);
    const std::vector<std::string> appNames = names(count);
    std::vector<std::string> identifiers;
    for (std::size_t number = 0; number < count; ++number) {
        const std::string identifier = "org.example.app" + std::to_string(number);
        writeEntry(root / "usr/share/applications" / (identifier + ".desktop"), identifier, appNames[number]);
        writeIcon(theme, identifier, number, random);
        identifiers.push_back(identifier);
    }
    return identifiers;
}

}  // namespace bench
