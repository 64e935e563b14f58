#include "catalog/IconQueue.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QTest>
#include <QThread>
#include <chrono>
#include <mutex>
#include <optional>
#include <semaphore>

#include "catalog/IconThreads.h"
#include "catalog/VxmAppList.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform_system/DataDirectory.h"

using catalog::IconQueue;
using catalog::iconSize;
using catalog::IconThreads;
using testing_support::DataDirectory;

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

class IconQueueTest : public testing::Test {
protected:
    IconQueueTest() {
        for (int app = 0; app < apps; ++app) {
            const auto icon = directory_.writeSvg(std::to_string(app) + ".svg", "lime");
            directory_.writeEntry("app" + std::to_string(app) + ".desktop", "Name=App\nIcon=" + icon.string() + "\n");
        }
        list_.applicationsFilteredUsingPredicate({});
        queue_.emplace(list_, *threads_);
    }

    static QString identifier(int app) { return QStringLiteral("app%1").arg(app); }
    void awaitEnd() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !queue_->isLoading(); }, 60'000));
    }

    static constexpr int apps = 20;
    DataDirectory directory_;
    GatedList list_{{directory_.path()}};
    std::optional<IconThreads> threads_{std::in_place};
    std::optional<IconQueue> queue_;
};

}  // namespace

TEST_F(IconQueueTest, TheNewestRequestIsLoadedFirst) {
    QStringList expected{identifier(0)};
    queue_->request(identifier(0));
    list_.awaitLoad();
    for (int app = 1; app < apps; ++app) queue_->request(identifier(app));
    queue_->request(identifier(1));  // shown again while still queued
    expected << identifier(1);
    for (int app = apps - 1; app > 0; --app) expected << identifier(app);
    EXPECT_TRUE(queue_->isLoading());
    list_.letThrough(apps + 1);
    awaitEnd();
    EXPECT_EQ(list_.loads(), expected);
    for (int app = 0; app < apps; ++app) EXPECT_TRUE(list_.hasCachedIconOfSize(iconSize, identifier(app)));
}

// Requests that come while the thread finds its queue empty: none is lost, and no thread is left behind.
TEST_F(IconQueueTest, EachRequestIsServedWhenItMeetsTheEndOfTheThread) {
    constexpr int rounds = 2000;
    list_.letThrough(rounds);
    for (int round = 0; round < rounds; ++round) {
        queue_->request(identifier(round % apps));
        QCoreApplication::processEvents();
    }
    awaitEnd();
    EXPECT_EQ(list_.loads().size(), rounds);
}

// Were it waited for, this would not end: the load goes on after that only.
TEST_F(IconQueueTest, DestroyingItDropsWhatIsQueuedAndWaitsForNothing) {
    queue_->request(identifier(0));
    list_.awaitLoad();
    for (int app = 1; app < apps; ++app) queue_->request(identifier(app));
    queue_.reset();
    list_.letThrough(1);
    threads_.reset();
    EXPECT_EQ(list_.loads(), QStringList{identifier(0)});
    EXPECT_TRUE(list_.hasCachedIconOfSize(iconSize, identifier(0))) << "the end of the app waits for it";
}

TEST_F(IconQueueTest, AnIconThatFailsIsNotAskedForAgain) {
    const auto unknown = QStringLiteral("com.apple.gamed");
    list_.letThrough(3);
    queue_->request(unknown);
    awaitEnd();
    queue_->request(unknown);
    EXPECT_FALSE(queue_->isLoading());
    queue_->request(identifier(0));
    awaitEnd();
    EXPECT_EQ(list_.loads(), (QStringList{unknown, identifier(0)}));
}

TEST_F(IconQueueTest, TwoScreensLoadAtOnceAndHearOnTheMainThread) {
    QObject screen;
    QStringList announced;
    QSet<Qt::HANDLE> threads;
    QObject::connect(&list_, &platform::ApplicationList::iconLoaded, &screen, [&](const QString& id, int points) {
        announced << id;
        threads.insert(QThread::currentThreadId());
        EXPECT_EQ(points, iconSize);
        EXPECT_TRUE(list_.hasCachedIconOfSize(points, id));
    });
    IconQueue other(list_, *threads_);
    list_.letThrough(2 * apps);
    for (int app = 0; app < apps; ++app) {
        queue_->request(identifier(app));
        other.request(identifier(app));
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return !queue_->isLoading() && !other.isLoading(); }, 60'000));
    QCoreApplication::processEvents();
    EXPECT_EQ(announced.size(), apps) << "an icon is announced once, whoever asked for it";
    EXPECT_EQ(threads, QSet<Qt::HANDLE>{QThread::currentThreadId()});
}
