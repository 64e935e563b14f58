#pragma once

#include "store/NotifyCenter.h"

namespace platform {

// Posts engine notifications as D-Bus signals on the system bus: object path /com/urmeld/vxm, interface
// com.urmeld.vxm, the notification's last part as member, no arguments; interface and member together spell the
// notification's name. The bus is found anew for each post and the post has left the process when post() returns. No
// bus, a bus that went away, nobody listening: nothing happens, at once. Main thread.
class SystemNotifyCenter : public store::NotifyCenter {
public:
    void post(std::string_view name) override;
};

}  // namespace platform
