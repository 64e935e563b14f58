#pragma once

#include <sys/fsuid.h>
#include <unistd.h>

// While it lives, this thread and those that it starts meet the files as somebody who owns none of them: permissions do
// not bind root. Without root's rights the files' owner is somebody whom they bind already.
struct AnotherPerson {
    AnotherPerson() {
        if (geteuid() == 0) setfsuid(65534);
    }
    ~AnotherPerson() { setfsuid(geteuid()); }
    AnotherPerson(const AnotherPerson&) = delete;
    AnotherPerson& operator=(const AnotherPerson&) = delete;
};
