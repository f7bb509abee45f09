// The report of a self-check: a text file that a user can read and send.
#pragma once

#include <array>
#include <mutex>
#include <string>
#include <vector>

namespace kv::host {

enum class Verdict { kPassed, kDiffers, kFailed, kNotPossible };

/// Lines can be added by any thread. Names of users and servers are left out of them.
class Report {
  public:
    /// Creates the file; throws Failure with kExitSaveFailed if that is not possible.
    explicit Report(const std::wstring& file);

    void section(const std::wstring& title);
    void fact(const std::wstring& name, const std::wstring& value);
    void add(Verdict verdict, const std::wstring& what, const std::wstring& values = {});
    void passed(const std::wstring& what, const std::wstring& values = {}) { add(Verdict::kPassed, what, values); }
    void differs(const std::wstring& what, const std::wstring& values) { add(Verdict::kDiffers, what, values); }
    void failed(const std::wstring& what, const std::wstring& values) { add(Verdict::kFailed, what, values); }
    void notPossible(const std::wstring& what, const std::wstring& why) { add(Verdict::kNotPossible, what, why); }
    /// Passed if `good`, otherwise failed.
    void expect(bool good, const std::wstring& what, const std::wstring& values = {});

    /// Replaces the file by what is known so far. `state` tells how far the check is.
    void write(const std::wstring& state);
    /// Neither a difference nor a failure.
    [[nodiscard]] bool allPassed();

    /// The full path.
    [[nodiscard]] const std::wstring& file() const noexcept { return file_; }
    /// The full path of a file beside the report, whose name begins with that of the report.
    [[nodiscard]] std::wstring beside(const std::wstring& ending) const;

  private:
    [[nodiscard]] std::wstring text(const std::wstring& state) const;
    void addLine(const std::wstring& first, const std::wstring& second, std::size_t width);

    std::wstring file_;
    std::mutex mutex_;
    std::vector<std::wstring> lines_;
    std::array<int, 4> counts_{};
};

/// The name of the file in a path.
[[nodiscard]] std::wstring nameOf(const std::wstring& path);
/// The folder of a path, with its backslash.
[[nodiscard]] std::wstring folderOf(const std::wstring& path);
/// A number in the form 0x80004005.
[[nodiscard]] std::wstring hexOf(unsigned long number);

}  // namespace kv::host
