// A function that runs at the end of a block.
#pragma once

#include <utility>

namespace kv::util {

/// Runs `function` when the block ends, also when an error ends it. `function` must not throw.
template <class Function>
class AtExit {
  public:
    explicit AtExit(Function function) : function_(std::move(function)) {}
    ~AtExit() { function_(); }
    AtExit(const AtExit&) = delete;
    AtExit& operator=(const AtExit&) = delete;

  private:
    Function function_;
};

}  // namespace kv::util
