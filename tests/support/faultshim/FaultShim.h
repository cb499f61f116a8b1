// Makes file-system calls fail on demand, for tests of what a full or broken disk does to a write.
// The library interposes write, pwrite, writev, fsync, fdatasync and close; link it into a test
// (it must come before libc, as any directly linked library does) or load it with LD_PRELOAD.
#pragma once

extern "C" {

enum TwFaultCall {
    TwFaultWrite = 1, // write, pwrite, pwrite64, writev
    TwFaultSync = 2,  // fsync, fdatasync
    TwFaultClose = 4, // close: the descriptor is closed, the call still reports the error
};

// The next `count` calls of the kinds in `calls` (a mask) on files whose path begins with
// `pathPrefix` fail with `error`; count < 0 means every call until twfault_disarm().
void twfault_arm(int calls, int error, int count, const char* pathPrefix);
void twfault_disarm();
// Calls failed since the last arm.
int twfault_failures();
}
