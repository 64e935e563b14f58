#pragma once

#include <QString>
#include <filesystem>

namespace platform {

// Whether this process may write to a folder, and the remedy if it may not.
struct WriteAccess {
    enum class Kind {
        granted,
        missing,        // the folder does not exist
        readOnly,       // its file system is read-only
        fromNextLogin,  // `user` has become a member of `group`, which may write, since this login began
        forMembers,     // members of `group` may write; `user` is not one
        refused,        // no group membership would grant it
    } kind = Kind::refused;
    QString user;   // user name; set for fromNextLogin and forMembers only
    QString group;  // the folder's group; likewise
};

// Checks with faccessat() and the effective rights, access control lists included. The user and group databases, which
// may be remote, are queried only when access is denied. Main thread.
WriteAccess writeAccessTo(const std::filesystem::path& folder);

}  // namespace platform
