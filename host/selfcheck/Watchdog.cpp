#include "host/selfcheck/Watchdog.h"

#include <utility>

namespace kv::host {

Watchdog::Watchdog(std::chrono::seconds limit, Alarm alarm, std::function<void()> look)
    : limit_(limit), alarm_(std::move(alarm)), look_(std::move(look)), thread_([this] { watch(); }) {}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void Watchdog::begin(const std::wstring& step) {
    const std::lock_guard lock(mutex_);
    step_ = step;
    deadline_ = Clock::now() + limit_;
}

void Watchdog::end() {
    const std::lock_guard lock(mutex_);
    deadline_.reset();
}

std::optional<std::wstring> Watchdog::lateStep() const {
    return deadline_ && Clock::now() >= *deadline_ ? std::optional(step_) : std::nullopt;
}

void Watchdog::watch() {
    std::unique_lock lock(mutex_);
    while (!ended_) {
        changed_.wait_for(lock, std::chrono::milliseconds(500));
        if (ended_) {
            return;
        }
        const std::optional<std::wstring> late = lateStep();
        if (late) {
            deadline_.reset();
        }
        // The thread that is watched may begin or end a step meanwhile.
        lock.unlock();
        if (late) {
            alarm_(*late);
        }
        look_();
        lock.lock();
    }
}

}  // namespace kv::host
