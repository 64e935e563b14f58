#pragma once

#include <QString>

namespace platform {

// The path of a module: a part of the app in a separate file that is loaded or executed on first use, at no cost for
// the start. Search path: QCoreApplication::libraryPaths(), which includes the program's directory, then ../lib/vexmor
// relative to it. Returns an empty string when the module is not installed. Any thread.
QString findModule(const QString& fileName);

}  // namespace platform
