// What the self-check has changed for its duration, and how each change is undone.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace kv::host {

/// Undoes the changes at the end, the last one first.
class Undo {
  public:
    Undo() = default;
    Undo(const Undo&) = delete;
    Undo& operator=(const Undo&) = delete;
    ~Undo() { run(); }

    void add(std::function<void()> step);
    /// By any thread; later calls do nothing.
    void run() noexcept;

  private:
    std::mutex mutex_;
    std::vector<std::function<void()>> steps_;
};

/// Creates a folder in the user's temporary folder and makes it the process's current and temporary folder, because
/// the control writes its log into the one and some pictures into the other. Returns its path.
[[nodiscard]] std::wstring enterWorkFolder(Undo& undo);

/// The file is afterwards as long as it is now; if there is none now, it is deleted.
void keepFile(Undo& undo, const std::wstring& path);

}  // namespace kv::host
