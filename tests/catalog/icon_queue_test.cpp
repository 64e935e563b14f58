#include "catalog/IconQueue.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QThread>
#include <mutex>
#include <semaphore>

#include "catalog/IconThreads.h"
#include "catalog/VxmAppList.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform_system/DataDirectory.h"

using catalog::IconQueue;
using catalog::iconSize;
using catalog::IconThreads;

namespace {

// The real catalog, but each load waits at a gate, so that a test can decide what is queued meanwhile.
class GatedList : public platform::DesktopApplicationList {
public:
    using DesktopApplicationList::DesktopApplicationList;

    QImage copyIconOfSize(int points, const QString& identifier) override {
        {
            const std::lock_guard guard(lock_);
            loads_.append(identifier);
        }
        begun_.release();
        gate_.acquire();
        return DesktopApplicationList::copyIconOfSize(points, identifier);
    }

    void awaitLoad() {
        while (!begun_.try_acquire_for(std::chrono::milliseconds(1))) QCoreApplication::processEvents();
    }
    void letThrough(int loads) { gate_.release(loads); }

    QStringList loads() const {
        const std::lock_guard guard(lock_);
        return loads_;
    }

private:
    mutable std::mutex lock_;
    QStringList loads_;
    std::counting_semaphore<> begun_{0};
    std::counting_semaphore<> gate_{0};
};

struct IconQueueTest : testing::Test {
    IconQueueTest() {
        const std::string icon = directory_.writeSvg("icon.svg", "lime");
        for (const QString& app : apps_) directory_.writeEntry(app.toStdString() + ".desktop", "Name=A\nIcon=" + icon);
        list_.applicationsFilteredUsingPredicate({});
        queue_.emplace(list_, *threads_);
    }

    void request(const QStringList& apps) {
        for (const QString& app : apps) queue_->request(app);
    }
    void awaitEnd() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !queue_->isLoading(); }, 60'000));
    }

    testing_support::DataDirectory directory_;
    const QStringList apps_{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")};
    GatedList list_{{directory_.path()}};
    std::optional<IconThreads> threads_{std::in_place};
    std::optional<IconQueue> queue_;
};

}  // namespace

TEST_F(IconQueueTest, TheNewestRequestIsLoadedFirst) {
    request({apps_[0]});
    list_.awaitLoad();
    request(apps_.mid(1));
    request({apps_[1]});  // shown again while still queued
    EXPECT_TRUE(queue_->isLoading());
    list_.letThrough(5);
    awaitEnd();
    EXPECT_EQ(list_.loads(), (QStringList{apps_[0], apps_[1], apps_[3], apps_[2], apps_[1]}));
    for (const QString& app : apps_) EXPECT_TRUE(list_.hasCachedIconOfSize(iconSize, app));
}

// Requests that come while the thread finds its queue empty: none is lost, and no thread is left behind.
TEST_F(IconQueueTest, EachRequestIsServedWhenItMeetsTheEndOfTheThread) {
    constexpr int rounds = 2000;
    list_.letThrough(rounds);
    for (int round = 0; round < rounds; ++round) {
        request({apps_[round % apps_.size()]});
        QCoreApplication::processEvents();
    }
    awaitEnd();
    EXPECT_EQ(list_.loads().size(), rounds);
}

// Were it waited for, this would not end: the load goes on after that only.
TEST_F(IconQueueTest, DestroyingItDropsWhatIsQueuedAndWaitsForNothing) {
    request({apps_[0]});
    list_.awaitLoad();
    request(apps_.mid(1));
    queue_.reset();
    list_.letThrough(1);
    threads_.reset();
    EXPECT_EQ(list_.loads(), apps_.mid(0, 1));
    EXPECT_TRUE(list_.hasCachedIconOfSize(iconSize, apps_[0])) << "the end of the app waits for it";
}

TEST_F(IconQueueTest, AnIconThatFailsIsNotAskedForAgain) {
    const auto unknown = QStringLiteral("com.apple.gamed");
    list_.letThrough(3);
    request({unknown});
    awaitEnd();
    request({unknown});
    EXPECT_FALSE(queue_->isLoading());
    request({apps_[0]});
    awaitEnd();
    EXPECT_EQ(list_.loads(), (QStringList{unknown, apps_[0]}));
}

TEST_F(IconQueueTest, TwoScreensLoadAtOnceAndHearOnTheMainThread) {
    QObject screen;
    QStringList announced;
    QObject::connect(&list_, &platform::ApplicationList::iconLoaded, &screen, [&](const QString& id, int points) {
        announced << id;
        EXPECT_TRUE(QThread::currentThread() == screen.thread() && points == iconSize);
        EXPECT_TRUE(list_.hasCachedIconOfSize(points, id));
    });
    IconQueue other(list_, *threads_);
    list_.letThrough(2 * int(apps_.size()));
    request(apps_);
    for (const QString& app : apps_) other.request(app);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !queue_->isLoading() && !other.isLoading(); }, 60'000));
    QCoreApplication::processEvents();
    announced.sort();
    EXPECT_EQ(announced, apps_) << "an icon is announced once, whoever asked for it";
}
