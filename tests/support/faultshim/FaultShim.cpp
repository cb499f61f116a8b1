#include "FaultShim.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <mutex>
#include <string>
#include <unistd.h>

namespace {

struct Plan {
    int calls = 0;
    int error = 0;
    int remaining = 0;
    std::string prefix;
    int failures = 0;
};

std::mutex g_mutex;
Plan g_plan;
std::atomic<bool> g_armed{false};

template <typename F>
F real(const char* name) {
    return reinterpret_cast<F>(dlsym(RTLD_NEXT, name));
}

// True when this call is to fail; errno is then set.
bool shouldFail(int call, int fd) {
    if (!g_armed.load(std::memory_order_acquire)) {
        return false;
    }
    char link[64];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    char target[PATH_MAX];
    const ssize_t n = readlink(link, target, sizeof target - 1);
    if (n <= 0) {
        return false;
    }
    target[n] = '\0';
    std::lock_guard lock(g_mutex);
    if ((g_plan.calls & call) == 0 || g_plan.remaining == 0 ||
        std::strncmp(target, g_plan.prefix.c_str(), g_plan.prefix.size()) != 0) {
        return false;
    }
    if (g_plan.remaining > 0) {
        --g_plan.remaining;
    }
    ++g_plan.failures;
    errno = g_plan.error;
    return true;
}

} // namespace

extern "C" {

void twfault_arm(int calls, int error, int count, const char* pathPrefix) {
    std::lock_guard lock(g_mutex);
    g_plan = Plan{calls, error, count, pathPrefix ? pathPrefix : "", 0};
    g_armed.store(true, std::memory_order_release);
}

void twfault_disarm() {
    std::lock_guard lock(g_mutex);
    g_plan.remaining = 0;
    g_armed.store(false, std::memory_order_release);
}

int twfault_failures() {
    std::lock_guard lock(g_mutex);
    return g_plan.failures;
}

ssize_t write(int fd, const void* buf, size_t count) {
    static const auto next = real<ssize_t (*)(int, const void*, size_t)>("write");
    return shouldFail(TwFaultWrite, fd) ? -1 : next(fd, buf, count);
}

int fsync(int fd) {
    static const auto next = real<int (*)(int)>("fsync");
    return shouldFail(TwFaultSync, fd) ? -1 : next(fd);
}

int close(int fd) {
    static const auto next = real<int (*)(int)>("close");
    if (shouldFail(TwFaultClose, fd)) {
        const int error = errno;
        next(fd);
        errno = error;
        return -1;
    }
    return next(fd);
}
}
