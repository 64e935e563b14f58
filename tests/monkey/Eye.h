#pragma once

#include <functional>
#include <string>

namespace platform {
class ViewController;
}

// Sees what a person sees. A table keeps its cells while what they show changes, so a screen at rest must look as if
// its tables had just been loaded: all that has happened has reached every cell that came into sight.
namespace monkey::Eye {

// Loads the tables of a screen at rest anew. The finding names the two pictures that should have been one; it is empty
// when all is well, and while a row is edited or pushed aside, which ends when its table is loaded. `settle` lets what
// the loading has begun come to its end.
std::string lookAt(platform::ViewController& screen, const std::function<void()>& settle);

}  // namespace monkey::Eye
