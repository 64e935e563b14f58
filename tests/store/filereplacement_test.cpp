#include "store/files/FileReplacement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <thread>

#include "Child.h"
#include "Files.h"
#include "store/files/Descriptor.h"
#include "store/files/FileReading.h"
#include "store/files/Sink.h"
#include "store/files/Temporaries.h"

namespace store {
namespace {

using Names = std::set<std::string>;

std::error_code replaceWith(const std::filesystem::path& path, std::string_view content) {
    return replaceFile(path, [&](Sink& sink) { sink.write(content); });
}

struct FileReplacement : testing::Test {
    void expectAlone(std::string_view content) const {
        EXPECT_EQ(contentOf(file), content);
        EXPECT_EQ(namesIn(directory.path()), Names{"file"});
    }

    TemporaryDirectory directory;
    const std::filesystem::path file = directory / "file";
};

using FileReading = FileReplacement;

TEST_F(FileReplacement, CreatesAFileThatEverybodyMayRead) {
    mode_t mask = umask(0077);
    EXPECT_FALSE(replaceWith(file, "content"));
    umask(mask);
    EXPECT_EQ(statusOf(file).st_mode & 07777, 0644u);
    expectAlone("content");
}

TEST_F(FileReplacement, KeepsModeOwnerAndAttributes) {
    put(file, "old");
    chmod(file.c_str(), 0640);
    bool isRoot = geteuid() == 0 && chown(file.c_str(), 1234, 4321) == 0;
    bool hasAttributes = setxattr(file.c_str(), "user.vexmor.test", "\0x", 2, 0) == 0;
    ino_t before = statusOf(file).st_ino;

    EXPECT_FALSE(replaceWith(file, "new"));
    struct stat after = statusOf(file);
    expectAlone("new");
    EXPECT_NE(after.st_ino, before);
    EXPECT_EQ(after.st_mode & 07777, 0640u);
    if (isRoot) {
        EXPECT_EQ(std::pair(after.st_uid, after.st_gid), std::pair(uid_t{1234}, gid_t{4321}));
    }
    if (hasAttributes) {
        char value[8];
        EXPECT_EQ(std::string(value, static_cast<std::size_t>(getxattr(file.c_str(), "user.vexmor.test", value, 8))),
                  std::string("\0x", 2));
    }
}

// Where people have numbers of their own, an owner may have none: the file is replaced all the same.
TEST_F(FileReplacement, ReplacesTheFileOfAnOwnerWhomTheNamespaceDoesNotKnow) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
    put(file, "old");
    ASSERT_EQ(chown(file.c_str(), 1234, 4321), 0);
    constexpr int noNamespace = 2;
    const int result = inChild([&] {
        if (unshare(CLONE_NEWUSER) != 0) return noNamespace;
        put("/proc/self/uid_map", "0 0 1");
        return replaceWith(file, "new") ? 1 : 0;
    });
    if (result == noNamespace) GTEST_SKIP() << "this process may not make a user namespace";
    EXPECT_EQ(result, 0);
    expectAlone("new");
}

TEST_F(FileReplacement, FollowsLinks) {
    std::filesystem::create_directory(directory / "elsewhere");
    put(directory / "elsewhere/file", "old");
    std::filesystem::create_symlink("elsewhere/second", directory / "first");
    std::filesystem::create_symlink("file", directory / "elsewhere/second");
    std::filesystem::create_symlink("elsewhere/none", directory / "dangling");
    std::filesystem::create_symlink("circle", directory / "circle");

    EXPECT_FALSE(replaceWith(directory / "first", "new"));
    EXPECT_FALSE(replaceWith(directory / "dangling", "created"));
    EXPECT_TRUE(replaceWith(directory / "circle", "x"));
    EXPECT_EQ(contentOf(directory / "elsewhere/file"), "new");
    EXPECT_EQ(contentOf(directory / "elsewhere/none"), "created");
    for (const char* link : {"first", "elsewhere/second", "dangling", "circle"})
        EXPECT_TRUE(std::filesystem::is_symlink(directory / link)) << link;
    EXPECT_EQ(namesIn(directory.path()), (Names{"elsewhere", "first", "dangling", "circle"}));
    EXPECT_EQ(namesIn(directory / "elsewhere"), (Names{"file", "second", "none"}));
}

TEST_F(FileReplacement, LeavesEverythingButRegularFilesAlone) {
    mkfifo((directory / "pipe").c_str(), 0600);
    std::filesystem::create_directory(directory / "folder");
    std::filesystem::create_symlink("/dev/null", directory / "device");
    for (const char* name : {"pipe", "folder", "device", "missing/file"})
        EXPECT_TRUE(replaceWith(directory / name, "x")) << name;
    EXPECT_TRUE(std::filesystem::is_fifo(directory / "pipe"));
    EXPECT_EQ(namesIn(directory.path()), (Names{"pipe", "folder", "device"}));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(FileReplacement, WritesIntoTheWorkingDirectory) {
    EXPECT_EQ(inChild([&] { return chdir(directory.path().c_str()) == 0 && !replaceWith("file", "x") ? 0 : 1; }), 0);
    expectAlone("x");
}

TEST_F(FileReplacement, SweepsWhatKilledWritersLeft) {
    put(directory / ".vxm-abcdefghijkl", "a name of somebody else's");
    put(directory / ".file.vxm-abc", "too short");
    put(directory / "file.vxm-abcdefghijkl", "not hidden");
    const Names others = namesIn(directory.path());
    for (const char* name : {".file.vxm-abcdefghijkl", ".other.vxm-abcdefghijkl"}) put(directory / name, "half");
    removeStaleTemporaries(directory.path(), "file");
    EXPECT_EQ(namesIn(directory.path()).size(), others.size() + 1);
    removeStaleTemporaries(directory.path());
    EXPECT_EQ(namesIn(directory.path()), others);
    removeStaleTemporaries(directory / "missing");
}

TEST_F(FileReplacement, DoesNotSweepWhatIsBeingWritten) {
    EXPECT_FALSE(replaceFile(file, [&](Sink& sink) {
        sink.write("whole");
        inChild([&] {
            removeStaleTemporaries(directory.path());
            return 0;
        });
        EXPECT_EQ(namesIn(directory.path()).size(), 1u);
    }));
    expectAlone("whole");
}

std::optional<Buffer> hold(const std::filesystem::path& path) {
    std::error_code failed;
    return holdFile(
        path, [](std::string_view) { return true; }, failed);
}

bool hasLeases(const std::filesystem::path& folder) {
    put(folder / "leased", "");
    const Descriptor leased(open((folder / "leased").c_str(), O_RDONLY));
    return fcntl(leased.number(), F_SETLEASE, F_RDLCK) == 0;
}

TEST_F(FileReading, HoldsLargeFilesWithoutACopy) {
    if (!hasLeases(directory.path())) GTEST_SKIP() << "this file system knows no leases";
    for (const std::size_t size : {std::size_t{2} << 20, (std::size_t{2} << 20) + 1}) {
        const std::string content(size, 'x');
        put(file, content);
        std::optional<Buffer> held = hold(file);
        ASSERT_TRUE(held && held->view() == content);
        EXPECT_EQ(std::string(held->bytes.get() + size, Buffer::padding), std::string(Buffer::padding, '\0'));
        // Nobody changes what is held, neither by writing nor by cutting it short.
        for (const int flags : {O_WRONLY, O_WRONLY | O_TRUNC}) {
            EXPECT_FALSE(Descriptor(open(file.c_str(), flags | O_NONBLOCK)).isOpen());
            EXPECT_EQ(errno, EWOULDBLOCK);
        }
        // To replace it changes nothing of what is held.
        EXPECT_FALSE(replaceWith(file, "new"));
        EXPECT_TRUE(held->view() == content);
        EXPECT_EQ(contentOf(file), "new");
        // Who wants to write waits until it is let go.
        put(file, content);
        held = hold(file);
        std::thread letsGo([&] { held.reset(); });
        EXPECT_TRUE(Descriptor(open(file.c_str(), O_WRONLY)).isOpen());
        letsGo.join();
    }
}

TEST_F(FileReading, CopiesWhatIsBeingWritten) {
    const std::string content(std::size_t{2} << 20, 'x');
    put(file, content);
    const Descriptor writer(open(file.c_str(), O_WRONLY));
    const std::optional<Buffer> held = hold(file);
    ASSERT_EQ(ftruncate(writer.number(), 0), 0);
    EXPECT_TRUE(held && held->view() == content);
}

TEST_F(FileReading, ReadsRegularFilesOnly) {
    put(file, "content");
    put(directory / "empty", "");
    mkfifo((directory / "pipe").c_str(), 0600);
    std::filesystem::create_symlink("pipe", directory / "link");
    EXPECT_EQ(readFile(file)->view(), "content");
    EXPECT_EQ(readFile(directory / "empty")->view(), "");
    for (const char* name : {"pipe", "link", "missing", "."}) EXPECT_FALSE(readFile(directory / name)) << name;
    EXPECT_FALSE(readFile("/dev/zero"));
    std::filesystem::resize_file(directory / "empty", largestFile + 1);
    EXPECT_FALSE(readFile(directory / "empty"));
}

}  // namespace
}  // namespace store
