#include "screens/rules/AddRuleAlert.h"

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/TextField.h"
#include "screens/rules/Examples.h"
#include "views/Chrome.h"
#include "views/IconView.h"

namespace screens {

namespace {

constexpr QRect backgroundFrame{11, 80, 262, 31};
constexpr QRect fieldFrame{16, 84, 252, 25};
constexpr int fontSize = 17;

}  // namespace

AddRuleAlert makeAddRuleAlert(const QString& title, platform::AlertViewDelegate& alertDelegate,
                              platform::TextFieldDelegate& fieldDelegate) {
    auto* alert = new platform::AlertView(title, QStringLiteral("\n\n"), &alertDelegate, QStringLiteral("Cancel"),
                                          {QStringLiteral("OK")});
    auto* background = new views::IconView(alert);
    background->setImageNamed(QStringLiteral("textfield"));
    alert->addSubview(background, backgroundFrame);

    auto* field = new platform::TextField(alert);
    field->setDelegate(&fieldDelegate);
    field->setClearButtonEnabled(true);
    field->setPlaceholderText(QStringLiteral("*%1:80").arg(exampleHost()));
    field->setAccessibleName(QStringLiteral("Hostname/IP"));
    field->setFont(views::fontWithName(QStringLiteral("Helvetica"), fontSize));
    field->setInputMethodHints(Qt::ImhUrlCharactersOnly | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
    alert->addSubview(field, fieldFrame);
    return {alert, field};
}

}  // namespace screens
