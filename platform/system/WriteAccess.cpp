#include "platform/system/WriteAccess.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace platform {

namespace {

bool holds(const std::vector<gid_t>& groups, gid_t group) {
    return std::find(groups.begin(), groups.end(), group) != groups.end();
}

bool isMemberInThisLogin(gid_t group) {
    std::vector<gid_t> groups(std::max(getgroups(0, nullptr), 0));
    groups.resize(std::max(getgroups(static_cast<int>(groups.size()), groups.data()), 0));
    return getegid() == group || holds(groups, group);
}

bool isMemberInDatabase(const passwd& user, gid_t group) {
    int count = 0;
    getgrouplist(user.pw_name, user.pw_gid, nullptr, &count);
    std::vector<gid_t> groups(count);
    getgrouplist(user.pw_name, user.pw_gid, groups.data(), &count);
    return holds(groups, group);
}

// Whether membership in the folder's group would grant access.
WriteAccess accessByMembership(const std::filesystem::path& folder) {
    constexpr mode_t groupMayWrite = S_IWGRP | S_IXGRP;
    struct stat status {};
    if (stat(folder.c_str(), &status) != 0 || (status.st_mode & groupMayWrite) != groupMayWrite) return {};
    if (status.st_uid == geteuid() || isMemberInThisLogin(status.st_gid)) return {};
    const group* const group = getgrgid(status.st_gid);
    const passwd* const user = getpwuid(geteuid());
    if (!group || !user) return {};
    return {isMemberInDatabase(*user, status.st_gid) ? WriteAccess::Kind::fromNextLogin : WriteAccess::Kind::forMembers,
            QString::fromLocal8Bit(user->pw_name), QString::fromLocal8Bit(group->gr_name)};
}

}  // namespace

WriteAccess writeAccessTo(const std::filesystem::path& folder) {
    using Kind = WriteAccess::Kind;
    if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0) return {Kind::granted, {}, {}};
    switch (errno) {
        case ENOENT:
            return {Kind::missing, {}, {}};
        case EROFS:
            return {Kind::readOnly, {}, {}};
        default:
            return accessByMembership(folder);
    }
}

}  // namespace platform
