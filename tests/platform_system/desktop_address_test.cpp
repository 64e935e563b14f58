#include "platform/system/DesktopAddress.h"

#include <gtest/gtest.h>

#include <QUrl>

namespace {

TEST(DesktopAddressTest, IsWrittenAsTheDesktopReadsIt) {
    const struct {
        const char* phone;
        const char* desktop;
    } cases[] = {
        {"mailto://support@vexmor.example?subject=Vexmor%20Help&body=A:%3Cbr%3EB!",
         "mailto:support@vexmor.example?subject=Vexmor%20Help&body=A:%3Cbr%3EB!"},
        {"mailto://support@vexmor.example", "mailto:support@vexmor.example"},
        {"mailto://a%20b@vexmor.example", "mailto:a%20b@vexmor.example"},
        {"mailto:support@vexmor.example?subject=x", "mailto:support@vexmor.example?subject=x"},
        {"https://someone@vexmor.example/page?q=1", "https://someone@vexmor.example/page?q=1"},
    };
    for (const auto& each : cases) {
        const QUrl phone(QString::fromLatin1(each.phone), QUrl::StrictMode);
        EXPECT_EQ(platform::desktopAddress(phone).toEncoded().toStdString(), each.desktop);
    }
}

}  // namespace
