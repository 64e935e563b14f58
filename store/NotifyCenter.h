#pragma once

#include <string_view>

namespace store {

// How the store tells the firewall engine that files have changed: a system-wide notification that carries nothing but
// its name. The platform implements it.
class NotifyCenter {
public:
    NotifyCenter() = default;
    virtual ~NotifyCenter() = default;
    NotifyCenter(const NotifyCenter&) = delete;
    NotifyCenter& operator=(const NotifyCenter&) = delete;

    // Returns at once and has no result: nobody listening is not an error.
    virtual void post(std::string_view name) = 0;

    // The process is about to end: gives what could not be sent yet a moment.
    virtual void flush() {}
};

// The engine rereads both rule files and the disabled marker.
inline constexpr std::string_view reloadBoth = "com.urmeld.vxm.reloadBoth";
// The engine picks up an app that has just been switched on.
inline constexpr std::string_view hookLate = "com.urmeld.vxm.hookLate";

}  // namespace store
