#pragma once

#include "platform/ui/navigation/ViewController.h"

namespace platform {

// State that ViewController and NavigationController share.
struct ViewController::Private {
    QPointer<QWidget> view;
    bool loading = false;
    NavigationController* navigation = nullptr;
    std::unique_ptr<ViewController> presented;
    ViewController* presenting = nullptr;
    QPointer<QWidget> focus;  // focus widget at the time the screen was left
};

}  // namespace platform
