#include "catalog/VxmAppList.h"

#include <gtest/gtest.h>

#include "platform/system/DesktopApplicationList.h"
#include "platform_system/DataDirectory.h"

using testing_support::DataDirectory;

namespace {

struct Case {
    QStringList identifiers;
    QStringList with;     // the installed identifiers that the list with them answers, sorted
    QStringList without;  // and the one without them
};

QStringList sorted(QStringList list) {
    list.sort();
    return list;
}

}  // namespace

TEST(VxmAppList, AnswersWithAndWithoutIdentifiers) {
    DataDirectory directory;
    for (const char* id : {"com.apple.stocks", "org.example.Mixed", "org.example.I", "plain"})
        directory.writeEntry(std::string(id) + ".desktop", "Name=Name of " + std::string(id) + "\n");
    platform::DesktopApplicationList list({directory.path()});

    const QString stocks = QStringLiteral("com.apple.stocks"), mixed = QStringLiteral("org.example.Mixed"),
                  i = QStringLiteral("org.example.I"), plain = QStringLiteral("plain");
    const Case cases[] = {
        {{}, {stocks}, {stocks, i, mixed, plain}},
        {{plain}, {stocks, plain}, {stocks, i, mixed}},
        {{QStringLiteral("ORG.EXAMPLE.mixed"), QStringLiteral("PLAIN")}, {stocks, mixed, plain}, {stocks, i}},
        {{QStringLiteral("org.example.i")}, {stocks, i}, {stocks, mixed, plain}},
        {{QStringLiteral("org.example.ı")}, {stocks}, {stocks, i, mixed, plain}},
        {{stocks}, {stocks}, {i, mixed, plain}},
        {{QStringLiteral("150"), QStringLiteral("com.apple.gamed"), QString()}, {stocks}, {stocks, i, mixed, plain}},
        {{QStringLiteral("pla*"), QStringLiteral("org.example.Mix")}, {stocks}, {stocks, i, mixed, plain}},
    };
    for (const Case& item : cases) {
        const auto with = catalog::VxmAppList::applicationsWithBundleIdentifiers(list, item.identifiers);
        EXPECT_EQ(sorted(with.keys()), item.with) << item.identifiers.join(u' ').toStdString();
        const auto without = catalog::VxmAppList::applicationsWithoutBundleIdentifiers(list, item.identifiers);
        EXPECT_EQ(sorted(without.keys()), item.without) << item.identifiers.join(u' ').toStdString();
        for (auto app = without.cbegin(); app != without.cend(); ++app)
            EXPECT_EQ(app.value(), QStringLiteral("Name of ") + app.key());
    }
}
