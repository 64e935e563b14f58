#pragma once

#include <string_view>

namespace store {

// Tells the firewall engine that files have changed: posts system-wide notifications, which carry a name and no data.
// Implemented by the platform.
class NotifyCenter {
public:
    NotifyCenter() = default;
    virtual ~NotifyCenter() = default;
    NotifyCenter(const NotifyCenter&) = delete;
    NotifyCenter& operator=(const NotifyCenter&) = delete;

    // Returns at once. There is no result: a notification without listeners is no error.
    virtual void post(std::string_view name) = 0;

    // Waits briefly for notifications that have not been sent yet. Called before the process ends.
    virtual void flush() {}
};

// The engine rereads both rule files and the disabled marker.
inline constexpr std::string_view reloadBoth = "com.urmeld.vxm.reloadBoth";
// The engine picks up an app that has just been switched on.
inline constexpr std::string_view hookLate = "com.urmeld.vxm.hookLate";

}  // namespace store
