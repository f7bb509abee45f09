// Where a procedure that traps its run-time errors reports them.
#pragma once

#include <cstdint>
#include <string>

#include "util/RuntimeError.h"

namespace kv::util {

class ErrorReporter {
  public:
    virtual ~ErrorReporter() = default;

    /// `flag`: how far the procedure got (100, 200, ...); `sProc`: its name; `sDetail`: its context text, may be empty.
    /// Never throws: a reporter that fails must not bring down the host.
    virtual void ErrHand(std::int16_t flag, const std::wstring& sProc, const std::wstring& sDetail,
                         const RuntimeError& error) noexcept = 0;
};

}  // namespace kv::util
