#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace store {

// Runs something in a process of its own, since it changes what belongs to the whole process; returns its exit code, or
// minus the signal that ended it.
template <class Function>
int inChild(Function function) {
    pid_t child = fork();
    if (child == 0) _exit(function());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace store
