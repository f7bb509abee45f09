// A flag that is set during a block.
#pragma once

namespace kv::util {

/// Sets the flag and restores its value at the end, also when an error ends the block. A nested block therefore leaves
/// the flag set.
class Raised {
  public:
    explicit Raised(bool& flag) noexcept : flag_(flag), before_(flag) { flag_ = true; }
    ~Raised() { flag_ = before_; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

  private:
    bool& flag_;
    bool before_;
};

}  // namespace kv::util
