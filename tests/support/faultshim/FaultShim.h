// Makes file-system calls fail on demand, for tests of what a full or broken disk does to a write.
// The shared library interposes write, fsync and close, the calls AtomicFile makes, for the whole
// process: a test links it (a directly linked library is searched before libc, as with LD_PRELOAD)
// and arms it through the functions below.
#pragma once

extern "C" {

enum TwFaultCall {
    TwFaultWrite = 1,
    TwFaultSync = 2,
    TwFaultClose = 4, // close: the descriptor is closed, the call still reports the error
};

// The next `count` calls of the kinds in `calls` (a mask) on files whose path begins with
// `pathPrefix` fail with `error`; count < 0 means every call until twfault_disarm().
void twfault_arm(int calls, int error, int count, const char* pathPrefix);
void twfault_disarm();
// Calls failed since the last arm.
int twfault_failures();
}
