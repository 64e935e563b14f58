#pragma once

namespace screens {

// Teaches Qt what a LogTextView is to a screen reader: a read-only text, whose value is what is in sight. Only the
// first call does anything.
void installLogTextAccessibility();

}  // namespace screens
