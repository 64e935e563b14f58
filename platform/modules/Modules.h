#pragma once

#include <QString>

namespace platform {

// Where a module lies: a part of the app that no start pays for, a file of its own that is loaded or run when it is
// first needed. It is looked for in QCoreApplication::libraryPaths(), which holds the program's own directory, and in
// ../lib/vexmor from there. An empty text when it is not installed. Any thread.
QString findModule(const QString& fileName);

}  // namespace platform
