// A flag that is set for the time of a block.
#pragma once

namespace kv::util {

/// Sets the flag and puts back the value that it had, also when an error ends the block. A block inside another one so
/// leaves the flag set.
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
