#include "platform/system/Fonts.h"

#include <fontconfig/fontconfig.h>

#include <system_error>

namespace platform {

std::jthread readFontsAhead() {
    try {
        return std::jthread([] { FcInit(); });
    } catch (const std::system_error&) {
        return {};
    }
}

}  // namespace platform
