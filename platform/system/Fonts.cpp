#include "platform/system/Fonts.h"

#include <fontconfig/fontconfig.h>

#include <system_error>

#include "store/Threads.h"

namespace platform {

std::jthread readFontsAhead() {
    try {
        return store::startBeside([] { FcInit(); });
    } catch (const std::system_error&) {
        return {};
    }
}

}  // namespace platform
