#include "support/SystemCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>

namespace faults {

namespace {

Fault waiting;
int atCall = 0;
bool linksAreRefused = false;
// Of all threads, one of which may outlive the change: it lets go of the file.
std::atomic<bool> isArmed;
std::atomic<int> calls;
std::atomic<long> faultAt;

// Counts a call; the fault, when it is this call's turn.
Effect next() {
    if (!isArmed) return Effect::nothing;
    const int now = ++calls;
    const bool lasts = waiting.effect == Effect::failsFromNow || waiting.effect == Effect::ends;
    return now == atCall || (lasts && now > atCall) ? waiting.effect : Effect::nothing;
}

void met(long number) {
    long none = 0;
    faultAt.compare_exchange_strong(none, number);
}

bool fails(Effect effect, long number) {
    if (effect == Effect::nothing || effect == Effect::isShort) return false;
    met(number);
    errno = waiting.error;
    return true;
}

template <class... Arguments>
long call(long number, Arguments... arguments) {
    return fails(next(), number) ? -1 : syscall(number, arguments...);
}

// A call that may do part of its work: `run` does it for a number of bytes.
template <class Run>
ssize_t callFor(long number, std::size_t size, Run run) {
    const Effect effect = next();
    const bool isShort = effect == Effect::isShort && size > 1;
    if (isShort) met(number);
    if (effect == Effect::ends && calls == atCall) run(size / 2);
    return fails(effect, number) ? -1 : run(isShort ? size / 2 : size);
}

}  // namespace

void arm(Fault fault, int at, bool refusesLinks) {
    waiting = fault;
    atCall = at;
    linksAreRefused = refusesLinks;
    calls = 0;
    faultAt = 0;
    isArmed = true;
}

Seen disarm() {
    isArmed = false;
    return {calls, faultAt};
}

}  // namespace faults

using faults::call;
using faults::callFor;

extern "C" {

int openat(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return int(call(SYS_openat, folder, path, flags, mode));
}
int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return int(call(SYS_openat, AT_FDCWD, path, flags, mode));
}
ssize_t pread(int file, void* to, size_t size, off_t at) {
    return callFor(SYS_pread64, size, [&](size_t part) { return syscall(SYS_pread64, file, to, part, at); });
}
ssize_t write(int file, const void* from, size_t size) {
    return callFor(SYS_write, size, [&](size_t part) { return syscall(SYS_write, file, from, part); });
}
ssize_t pwrite(int file, const void* from, size_t size, off_t at) {
    return callFor(SYS_pwrite64, size, [&](size_t part) { return syscall(SYS_pwrite64, file, from, part, at); });
}
ssize_t getrandom(void* to, size_t size, unsigned flags) {
    return callFor(SYS_getrandom, size, [&](size_t part) { return syscall(SYS_getrandom, to, part, flags); });
}
// What fails to be closed properly is closed nevertheless.
int close(int file) {
    const bool fails = faults::fails(faults::next(), SYS_close);
    const int error = errno;
    const int result = int(syscall(SYS_close, file));
    if (fails) errno = error;
    return fails ? -1 : result;
}
int fcntl(int file, int command, ...) {
    va_list arguments;
    va_start(arguments, command);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    return int(call(SYS_fcntl, file, command, argument));
}
// Memory without a file is not a matter of files.
void* mmap(void* address, size_t size, int protection, int flags, int file, off_t at) noexcept {
    const bool isOfFile = (flags & MAP_ANONYMOUS) == 0;
    if (isOfFile && faults::fails(faults::next(), SYS_mmap)) return MAP_FAILED;
    return reinterpret_cast<void*>(syscall(SYS_mmap, address, size, protection, flags, file, at));
}
int fsync(int) {
    return faults::fails(faults::next(), SYS_fsync) ? -1 : 0;
}
int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    if (faults::isArmed && faults::linksAreRefused) {
        errno = EPERM;
        return -1;
    }
    return int(call(SYS_linkat, fromFolder, from, toFolder, to, flags));
}
int remove(const char* path) noexcept {
    const int result = int(call(SYS_unlinkat, AT_FDCWD, path, 0));
    return result != 0 && errno == EISDIR ? int(call(SYS_unlinkat, AT_FDCWD, path, AT_REMOVEDIR)) : result;
}

// What passes its arguments on, by the number that the system has for it.
#define CALL(result, name, parameters, ...) \
    result name parameters noexcept {       \
        return result(call(__VA_ARGS__));   \
    }

CALL(int, madvise, (void* address, size_t size, int advice), SYS_madvise, address, size, advice)
CALL(int, mkdir, (const char* path, mode_t mode), SYS_mkdirat, AT_FDCWD, path, mode)
CALL(int, ftruncate, (int file, off_t size), SYS_ftruncate, file, size)
CALL(int, rename, (const char* from, const char* to), SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0)
CALL(int, unlink, (const char* path), SYS_unlinkat, AT_FDCWD, path, 0)
CALL(int, renameat, (int fromFolder, const char* from, int toFolder, const char* to), SYS_renameat2, fromFolder, from,
     toFolder, to, 0)
CALL(int, renameat2, (int fromFolder, const char* from, int toFolder, const char* to, unsigned flags), SYS_renameat2,
     fromFolder, from, toFolder, to, flags)
CALL(int, unlinkat, (int folder, const char* path, int flags), SYS_unlinkat, folder, path, flags)
CALL(int, fchmod, (int file, mode_t mode), SYS_fchmod, file, mode)
CALL(int, fchown, (int file, uid_t owner, gid_t group), SYS_fchown, file, owner, group)
CALL(int, flock, (int file, int operation), SYS_flock, file, operation)
CALL(int, fstatat, (int folder, const char* path, struct stat* status, int flags), SYS_newfstatat, folder, path, status,
     flags)
CALL(int, stat, (const char* path, struct stat* status), SYS_newfstatat, AT_FDCWD, path, status, 0)
CALL(int, lstat, (const char* path, struct stat* status), SYS_newfstatat, AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW)
CALL(int, fstat, (int file, struct stat* status), SYS_fstat, file, status)
CALL(ssize_t, readlink, (const char* path, char* to, size_t size), SYS_readlinkat, AT_FDCWD, path, to, size)
CALL(ssize_t, llistxattr, (const char* path, char* to, size_t size), SYS_llistxattr, path, to, size)
CALL(ssize_t, lgetxattr, (const char* path, const char* name, void* to, size_t size), SYS_lgetxattr, path, name, to,
     size)
CALL(int, fsetxattr, (int file, const char* name, const void* value, size_t size, int flags), SYS_fsetxattr, file, name,
     value, size, flags)
}
