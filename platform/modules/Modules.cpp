#include "platform/modules/Modules.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

namespace platform {

QString findModule(const QString& fileName) {
    QStringList directories = QCoreApplication::libraryPaths();
    directories.append(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/vexmor"));
    for (const QString& directory : directories) {
        QString file = directory + QLatin1Char('/') + fileName;
        if (QFile::exists(file)) return file;
    }
    return {};
}

}  // namespace platform
