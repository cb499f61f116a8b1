// Makes file-system calls fail on demand, for tests of what a full or broken disk does to a write.
// The shared library interposes write, pwrite, writev, fsync, fdatasync and close for the whole
// process, Qt's own calls included: a test links it (a directly linked library is searched before
// libc, as with LD_PRELOAD) and arms it through the functions below.
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
