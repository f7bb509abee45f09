// Notices steps that do not end.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace kv::host {

/// A thread that runs as long as this object exists.
class Watchdog {
  public:
    using Clock = std::chrono::steady_clock;
    using Alarm = std::function<void(const std::wstring& step)>;

    /// If a step takes longer than `limit`, `alarm` is called once, in the thread of the watchdog. `look` is called
    /// there about twice a second.
    Watchdog(std::chrono::seconds limit, Alarm alarm, std::function<void()> look);
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog();

    void begin(const std::wstring& step);
    void end();

  private:
    void watch();
    [[nodiscard]] std::optional<std::wstring> lateStep() const;

    std::chrono::seconds limit_;
    Alarm alarm_;
    std::function<void()> look_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::wstring step_;
    std::optional<Clock::time_point> deadline_;
    bool ended_ = false;
    std::thread thread_;  // the last member, because it uses the others
};

}  // namespace kv::host
