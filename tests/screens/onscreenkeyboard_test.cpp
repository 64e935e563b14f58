// Editing while an on-screen keyboard comes and goes, and while the window changes its size.
#include <gtest/gtest.h>
#include <qpa/qplatforminputcontext.h>

#include <QtGui/private/qinputmethod_p.h>
#include <functional>

#include "platform/ui/controls/TextField.h"
#include "support/Rules.h"
#include "support/TestDevice.h"

namespace {

using store::File;

constexpr int width = 320;
constexpr int height = 548;
constexpr int bar = 40;

// The system's side of a keyboard: what it tells the toolkit.
class Keyboard : public QPlatformInputContext {
public:
    Keyboard() { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this; }
    ~Keyboard() override { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr; }

    void showAt(const QRectF& frame) {
        frame_ = frame;
        shown_ = !frame.isNull();
        emitKeyboardRectChanged();
        emitInputPanelVisibleChanged();
        QApplication::processEvents();
    }

    bool isValid() const override { return true; }
    void showInputPanel() override { wanted = true; }
    void hideInputPanel() override { wanted = false; }
    QRectF keyboardRect() const override { return frame_; }
    bool isInputPanelVisible() const override { return shown_; }

    bool wanted = false;  // by the app

private:
    QRectF frame_;
    bool shown_ = false;
};

struct OnScreenKeyboardTest : testing::Test {
    static constexpr int lastRule = 29;

    void SetUp() override {
        std::string entries;
        for (int rule = 10; rule <= 10 + lastRule; ++rule) entries += entry("host" + std::to_string(rule) + ".example");
        device.put(File::globalRules, rulesFile("globalAllow", entries));
        device.put(File::guiSettings, "<dict><key>didShowEditAlert</key><true/></dict>");
        device.launch();
        device.tapRow(0, 0);
    }

    void editRule(int row) {
        device.tap(width - 28, 20);  // "Edit"
        device.tapRow(1, row);
        device.type(QStringLiteral("x"));
    }

    // The field that has the keyboard, in the window's points; empty when none has.
    QRect editedField() {
        auto* field = qobject_cast<platform::TextField*>(QApplication::focusWidget());
        if (!field || !field->isFirstResponder()) return {};
        return {field->mapTo(device.window(), QPoint()), field->size()};
    }

    QRect shownView() { return device.screen()->view()->geometry(); }

    QString rule(int row) { return rulesIn(*device.plist(File::globalRules), "globalAllow").value(row); }

    TestDevice device;
    Keyboard keyboard;
};

TEST_F(OnScreenKeyboardTest, ScreensEndWhereItBegins) {
    const std::tuple<const char*, QRectF, int> cases[] = {
        {"half a point", {0, 350.5, width, 197.5}, 350},
        {"larger than its part of the window", {0, 400, width, 300}, 400},
        {"floats", {40, 100, 240, 150}, height},
        {"below the window", {0, 600, width, 216}, height},
        {"all of the window", {0, -10, width, 600}, height},
        {"no width", {0, 332, 0, 0}, height},
        {"lower part", {0, 332, width, 216}, 332},
    };
    for (const auto& [what, frame, end] : cases) {
        keyboard.showAt(frame);
        EXPECT_EQ(shownView(), QRect(0, 0, width, end)) << what;
    }
    device.tap(20, 20);
    EXPECT_EQ(shownView(), QRect(0, 0, width, 332)) << "the screen below as well";
}

TEST_F(OnScreenKeyboardTest, TheRuleThatIsEditedStaysInSight) {
    const auto resize = [this](int to, int high) { device.window()->resize(to, high); };
    const std::pair<const char*, std::function<void(bool covers)>> cases[] = {
        {"a keyboard", [&](bool covers) { keyboard.showAt(covers ? QRectF(0, 332, width, 216) : QRectF()); }},
        {"a smaller window", [&](bool covers) { resize(width, covers ? 332 : height); }},
        {"a turned screen", [&](bool covers) { covers ? resize(height, 332) : resize(width, height); }},
    };
    for (const int row : {0, 5, lastRule}) {
        for (const auto& [what, cover] : cases) {
            SCOPED_TRACE(testing::Message() << what << " over row " << row);
            const QString before = rule(row);
            editRule(row);
            ASSERT_FALSE(editedField().isEmpty());
            EXPECT_TRUE(keyboard.wanted);
            cover(true);
            QApplication::processEvents();
            EXPECT_GE(editedField().top(), bar);
            EXPECT_LT(editedField().bottom(), 332);
            device.type(QStringLiteral("y"));
            cover(false);
            QApplication::processEvents();
            EXPECT_FALSE(editedField().isEmpty());
            device.key(Qt::Key_Return);
            EXPECT_FALSE(keyboard.wanted);
            EXPECT_EQ(rule(row).size(), before.size() + 2) << rule(row).toStdString();
            EXPECT_EQ(shownView().size(), QSize(width, height));
            device.tap(width - 28, 20);
        }
    }
}

TEST_F(OnScreenKeyboardTest, ScreensFitIntoLessThanTheWindowWants) {
    EXPECT_EQ(device.window()->windowHandle()->minimumSize(), QSize(320, 100));
    device.window()->resize(280, 200);
    QApplication::processEvents();
    EXPECT_EQ(shownView(), QRect(0, 0, 280, 200));
    EXPECT_LE(device.table()->rectForRow({1, 0}).right(), 280);
}

TEST_F(OnScreenKeyboardTest, AnAlertMovesUpAndBack) {
    device.tapRow(0, 0);
    const QRect before = device.alert()->geometry();
    EXPECT_TRUE(keyboard.wanted);
    device.type(QStringLiteral("new.example"));
    for (const int top : {332, 160}) {
        keyboard.showAt({0, qreal(top), width, qreal(height - top)});
        EXPECT_GE(device.alert()->y(), 0);
        EXPECT_GE(editedField().top(), 0);
        EXPECT_LT(editedField().bottom(), top);
    }
    keyboard.showAt({});
    EXPECT_EQ(device.alert()->geometry(), before);
    device.answer(1);
    EXPECT_FALSE(keyboard.wanted);
    EXPECT_EQ(rule(lastRule + 1), u"new.example");
}

}  // namespace
