#pragma once

#include "store/NotifyCenter.h"

namespace simulator {

// Posts through another notify center and prints each post as a line on standard output.
class PrintingNotifyCenter : public store::NotifyCenter {
public:
    // `center` outlives this one.
    explicit PrintingNotifyCenter(store::NotifyCenter& center) : center_(center) {}

    void post(std::string_view name) override;
    void flush() override { center_.flush(); }

private:
    store::NotifyCenter& center_;
};

}  // namespace simulator
