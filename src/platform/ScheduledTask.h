// A handle on a timer of a Scheduler: cancels the timer when cancelled or destroyed.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tw {

class ScheduledTask {
public:
    ScheduledTask() = default;
    explicit ScheduledTask(std::function<void()> cancel);
    ~ScheduledTask();

    ScheduledTask(ScheduledTask&& other) noexcept;
    ScheduledTask& operator=(ScheduledTask&& other) noexcept;
    ScheduledTask(const ScheduledTask&) = delete;
    ScheduledTask& operator=(const ScheduledTask&) = delete;

    // Stops the timer; its action never runs again. Safe to call twice.
    void cancel();
    // True until cancelled, or until a single-shot timer has fired.
    bool isActive() const;

    // Lets the scheduler mark a single-shot task done; shared so the handle can be moved freely.
    std::shared_ptr<bool> activeFlag() const { return m_active; }

private:
    std::function<void()> m_cancel;
    std::shared_ptr<bool> m_active = std::make_shared<bool>(false);
};

} // namespace tw
