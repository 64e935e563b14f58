#pragma once

#include <QString>
#include <optional>
#include <thread>

namespace platform {

// Begins to read the machine's font configuration and catalog, with the library that the toolkit reads them with when
// the first text is measured: a good part of what starting a program with a window takes. The thread ends when they
// are read; where there is none to be had, it is not joinable and nothing is read. Who asks the toolkit for a font
// before that has them read twice, that is all.
[[nodiscard]] std::jthread readFontsAhead();

// A font file's face, as the toolkit lists it.
struct FontFace {
    QString family;
    QString style;
};

// The installed face of this PostScript name ("Helvetica-Bold"): the one name of a face that foundries agree on,
// however they sort their faces into families. Any thread.
std::optional<FontFace> fontFace(const QString& postScriptName);

}  // namespace platform
