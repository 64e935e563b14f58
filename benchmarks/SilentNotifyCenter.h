#pragma once

#include "store/NotifyCenter.h"

namespace bench {

// For measuring what happens before the engine is told.
class SilentNotifyCenter : public store::NotifyCenter {
public:
    void post(std::string_view) override {}
};

}  // namespace bench
