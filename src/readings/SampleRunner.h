// Where blocking reads run: away from the main thread in the program, inline or held back in
// tests. The readers keep state between reads, so a runner runs one job at a time.
#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

namespace tw {

class SampleRunner {
public:
    SampleRunner() = default;
    virtual ~SampleRunner() = default;
    Q_DISABLE_COPY_MOVE(SampleRunner)

    // Runs `work`, then `done` on the main thread, unless `context` is gone by then.
    virtual void run(std::function<void()> work, const QObject* context,
                     std::function<void()> done) = 0;
};

// `work`'s result handed to `done`.
template <typename Work, typename Done>
void runSample(SampleRunner& runner, const QObject* context, Work work, Done done) {
    using Result = std::invoke_result_t<Work&>;
    auto result = std::make_shared<std::optional<Result>>();
    runner.run([result, work = std::move(work)]() mutable { result->emplace(work()); }, context,
               [result, done = std::move(done)]() mutable { done(std::move(**result)); });
}

} // namespace tw
