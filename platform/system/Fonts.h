#pragma once

#include <QString>
#include <optional>
#include <thread>

namespace platform {

// Starts reading the font configuration and the font cache with fontconfig on a background thread. Qt would otherwise
// read them when the first text is measured, which is a large part of the start of a program with a window. The thread
// ends when they are read. If no thread can be created, the result is not joinable and nothing is read. A font request
// before the end of the thread is correct but reads them a second time.
//
// Brings 25 to 29 % of the goal of its row, the first frame, together with reading the applications ahead
// (DesktopApplicationList); costs a thread.
[[nodiscard]] std::jthread readFontsAhead();

// A font face by the family and style names that Qt uses.
struct FontFace {
    QString family;
    QString style;
};

// The installed face with this PostScript name ("Helvetica-Bold"), the only name of a face that does not depend on how
// its foundry groups faces into families. Any thread.
std::optional<FontFace> fontFace(const QString& postScriptName);

}  // namespace platform
