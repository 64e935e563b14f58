#pragma once

#include <QImage>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

namespace testing_support {

// A data directory of desktop entries and icons, in a temporary folder of its own.
class DataDirectory {
public:
    DataDirectory() = default;
    ~DataDirectory() { std::filesystem::remove_all(path()); }  // file names that are not valid UTF-8 too
    DataDirectory(const DataDirectory&) = delete;
    DataDirectory& operator=(const DataDirectory&) = delete;

    std::filesystem::path path() const { return folder_.path().toStdString(); }

    std::filesystem::path write(const std::string& name, const std::string& bytes) const {
        auto file = path() / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

    // `name` below `applications`.
    std::filesystem::path writeEntry(const std::string& name, const std::string& keys) const {
        return write("applications/" + name, "[Desktop Entry]\nType=Application\n" + keys);
    }

    std::filesystem::path writePng(const std::string& name, int size, Qt::GlobalColor colour) const {
        auto file = write(name, "");
        QImage image(size, size, QImage::Format_ARGB32);
        image.fill(colour);
        image.save(QString::fromStdString(file.string()), "PNG");
        return file;
    }

    std::filesystem::path writeSvg(const std::string& name, const std::string& colour) const {
        return write(name,
                     "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 8 8'><rect width='8' height='8' fill='" +
                         colour + "'/></svg>");
    }

    // A hicolor theme with 16- and 32-point pictures, 16-point ones at scale 2, and vectors.
    void writeTheme() const {
        write("icons/hicolor/index.theme",
              "[Icon Theme]\nName=Hicolor\nDirectories=16/apps,16@2/apps,32/apps,vectors/apps,absent/apps\n"
              "[16/apps]\nSize=16\nType=Fixed\n"
              "[16@2/apps]\nSize=16\nScale=2\nType=Fixed\n"
              "[32/apps]\nSize=32\n"
              "[vectors/apps]\nSize=128\nType=Scalable\nMinSize=8\nMaxSize=512\n"
              "[absent/apps]\nSize=29\n");
    }

private:
    QTemporaryDir folder_;
};

}  // namespace testing_support
