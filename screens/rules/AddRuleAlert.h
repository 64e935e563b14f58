#pragma once

class QString;

namespace platform {
class AlertView;
class AlertViewDelegate;
class TextField;
class TextFieldDelegate;
}  // namespace platform

namespace screens {

// The alert that asks for a new rule: "Cancel" (0), "OK" (1) and a field that has the keyboard once it is shown.
// Return in the field is "OK": with a keyboard of keys nobody would look for the button.
struct AddRuleAlert {
    platform::AlertView* alert;
    platform::TextField* field;
};

AddRuleAlert makeAddRuleAlert(const QString& title, platform::AlertViewDelegate& alertDelegate,
                              platform::TextFieldDelegate& fieldDelegate);

}  // namespace screens
