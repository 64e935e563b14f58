#pragma once

#include "platform/ui/navigation/ViewController.h"

namespace platform {

// What a screen and the stack that moves it know of each other.
struct ViewController::Private {
    QPointer<QWidget> view;
    bool loading = false;
    NavigationController* navigation = nullptr;
    std::unique_ptr<ViewController> presented;
    ViewController* presenting = nullptr;
    QPointer<QWidget> focus;  // what had the keyboard when another screen came
};

}  // namespace platform
