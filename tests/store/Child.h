#pragma once

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <new>

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

// What a child process writes into it, its parent reads.
template <class T>
class Shared {
public:
    Shared() : value_(new (map()) T) {}
    ~Shared() { munmap(value_, sizeof(T)); }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

    T& operator*() const { return *value_; }

private:
    static void* map() { return mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0); }

    T* value_;
};

}  // namespace store
