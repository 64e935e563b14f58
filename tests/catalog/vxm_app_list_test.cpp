#include "catalog/VxmAppList.h"

#include <gtest/gtest.h>

#include "platform/system/DesktopApplicationList.h"
#include "platform_system/DataDirectory.h"

using namespace Qt::StringLiterals;

TEST(VxmAppList, AnswersWithAndWithoutIdentifiers) {
    const QStringList installed{u"com.apple.stocks"_s, u"org.example.I"_s, u"org.example.Mixed"_s, u"plain"_s};
    testing_support::DataDirectory directory;
    for (const QString& id : installed)
        directory.writeEntry(id.toStdString() + ".desktop", "Name=Name of " + id.toStdString() + "\n");
    platform::DesktopApplicationList list({directory.path()});

    // Which of the installed ones are found; the same, and the one that is always there.
    const std::tuple<QStringList, QList<int>, QList<int>> cases[] = {
        {{}, {}, {0}},
        {{u"plain"_s}, {3}, {0, 3}},
        {{u"ORG.EXAMPLE.mixed"_s, u"PLAIN"_s}, {2, 3}, {0, 2, 3}},
        {{u"org.example.i"_s}, {1}, {0, 1}},
        {{u"org.example.ı"_s}, {}, {0}},
        {{u"com.apple.stocks"_s}, {0}, {0}},
        {{u"150"_s, u"com.apple.gamed"_s, u""_s}, {}, {0}},
        {{u"pla*"_s, u"org.example.Mix"_s}, {}, {0}},
    };
    for (const auto& [identifiers, found, with] : cases) {
        SCOPED_TRACE(identifiers.join(u' ').toStdString());
        const auto answered = catalog::VxmAppList::applicationsWithBundleIdentifiers(list, identifiers);
        const auto others = catalog::VxmAppList::applicationsWithoutBundleIdentifiers(list, identifiers);
        for (int i = 0; i < installed.size(); ++i) {
            const QString name = u"Name of "_s + installed[i];
            EXPECT_EQ(answered.value(installed[i]), with.contains(i) ? name : QString()) << i;
            EXPECT_EQ(others.value(installed[i]), found.contains(i) ? QString() : name) << i;
        }
        EXPECT_EQ(answered.size() + others.size(), with.size() + installed.size() - found.size());
    }
}
