#include "platform/system/WriteAccess.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>

#include "store/Child.h"

using platform::WriteAccess;
using Kind = platform::WriteAccess::Kind;

namespace {

// Kind, user and group.
using Fields = std::tuple<Kind, std::string, std::string>;

Fields accessTo(const std::filesystem::path& folder) {
    const WriteAccess access = platform::writeAccessTo(folder);
    return {access.kind, access.user.toStdString(), access.group.toStdString()};
}

// Takes somebody else's rights until it is destroyed; the process really remains root's.
class SomebodyElse {
public:
    SomebodyElse(uid_t user, gid_t group) : isReady_(setgroups(0, nullptr) + setegid(group) + seteuid(user) == 0) {}
    ~SomebodyElse() { [[maybe_unused]] const int back = seteuid(0) + setegid(0); }
    bool isReady() const { return isReady_; }

private:
    bool isReady_;
};

TEST(WriteAccess, KnowsAFolderOfOnesOwnAndOneThatIsMissing) {
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.path().toStdString();
    EXPECT_EQ(accessTo(path), Fields(Kind::granted, "", ""));
    EXPECT_EQ(accessTo(path / "missing"), Fields(Kind::missing, "", ""));
    chmod(path.c_str(), 0570);
    EXPECT_EQ(accessTo(path), Fields(geteuid() == 0 ? Kind::granted : Kind::refused, "", ""));
    chmod(path.c_str(), 0700);
}

TEST(WriteAccess, TellsWhatHelpsWhom) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can be somebody else";
    const passwd* const user = getpwnam("games");
    const group* const other = getgrnam("daemon");
    ASSERT_TRUE(user && other && getgrgid(user->pw_gid)) << "they belong to every Debian system";
    const uid_t games = user->pw_uid;
    const gid_t own = user->pw_gid;
    const gid_t daemon = other->gr_gid;
    constexpr uid_t nameless = 54321;

    const Fields refused(Kind::refused, "", "");
    // The person, the group that the login has; the folder's owner, group and mode.
    const std::tuple<const char*, uid_t, gid_t, uid_t, gid_t, mode_t, Fields> table[] = {
        {"a member", games, own, 0, own, 02775, {Kind::granted, "", ""}},
        {"a member from the next login on", games, daemon, 0, own, 02775, {Kind::fromNextLogin, "games", "games"}},
        {"no member", games, own, 0, daemon, 02775, {Kind::forMembers, "games", "daemon"}},
        {"a group that may not write", games, own, 0, daemon, 02755, refused},
        {"a group without a name", games, own, 0, nameless, 02775, refused},
        {"an owner who may not write", games, own, games, daemon, 02575, refused},
        {"a person without a name", nameless, own, 0, daemon, 02775, refused},
    };
    const QTemporaryDir parent;
    chmod(parent.path().toLocal8Bit(), 0755);
    const std::filesystem::path folder = parent.filePath(QStringLiteral("folder")).toStdString();
    std::filesystem::create_directory(folder);
    for (const auto& [what, person, login, owner, itsGroup, mode, access] : table) {
        SCOPED_TRACE(what);
        ASSERT_EQ(chown(folder.c_str(), owner, itsGroup) + chmod(folder.c_str(), mode), 0);
        const SomebodyElse rights(person, login);
        ASSERT_TRUE(rights.isReady());
        EXPECT_EQ(accessTo(folder), access);
    }
}

TEST(WriteAccess, TellsAReadOnlyFileSystem) {
    constexpr int noMount = 255;
    const QTemporaryDir folder;
    const QByteArray path = folder.path().toLocal8Bit();
    const int kind = store::inChild([&] {
        if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", path, "tmpfs", MS_RDONLY, nullptr) != 0)
            return noMount;
        return int(platform::writeAccessTo(path.toStdString()).kind);
    });
    if (kind == noMount) GTEST_SKIP() << "this process may not mount anything";
    EXPECT_EQ(kind, int(Kind::readOnly));
}

}  // namespace
