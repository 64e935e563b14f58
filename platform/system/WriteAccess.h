#pragma once

#include <QString>
#include <filesystem>

namespace platform {

// Whether this process may write to a folder, and what helps if it may not.
struct WriteAccess {
    enum class Kind {
        granted,
        missing,        // there is no such folder
        readOnly,       // nobody may write to its file system
        fromNextLogin,  // `user` is a member of `group`, which may, but was not yet when this login began
        forMembers,     // members of `group` may, and `user` is none
        refused,        // no membership helps
    } kind = Kind::refused;
    QString user;   // by name; of the two kinds that speak of them only
    QString group;  // the folder's own
};

// Asks the system what it would answer to an attempt, with the rights in effect, access control lists included. The
// databases of users and groups, which may lie on a network, are asked only when it would say no. Main thread.
WriteAccess writeAccessTo(const std::filesystem::path& folder);

}  // namespace platform
