#pragma once

#include <thread>

namespace platform {

// Begins to read the machine's font configuration and catalog, with the library that the toolkit reads them with when
// the first text is measured: a good part of what starting a program with a window takes. The thread ends when they
// are read; where there is none to be had, it is not joinable and nothing is read. Who asks the toolkit for a font
// before that has them read twice, that is all.
[[nodiscard]] std::jthread readFontsAhead();

}  // namespace platform
