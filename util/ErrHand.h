// Where a procedure that traps its run-time errors reports them.
#pragma once

#include <cstdint>
#include <string_view>

#include "util/RuntimeError.h"

namespace kv::util {

class ErrorReporter {
  public:
    virtual ~ErrorReporter() = default;

    /// `flag`: how far the procedure got (100, 200, ...); `sProc`: its name; `sDetail`: its context text, may be empty;
    /// `error`: the error in force. Never throws: a reporter that fails must not bring down the host.
    virtual void ErrHand(std::int16_t flag, std::wstring_view sProc, std::wstring_view sDetail,
                         const RuntimeError& error) noexcept = 0;

    /// The same for a procedure whose result reports the failure to its caller: the record without a message to the
    /// user. Reporters without messages need not override it.
    virtual void ErrNote(std::int16_t flag, std::wstring_view sProc, std::wstring_view sDetail,
                         const RuntimeError& error) noexcept {
        ErrHand(flag, sProc, sDetail, error);
    }

    /// A line for the tech-support log that is not an error: the progress of a procedure. Reporters without a log drop
    /// it.
    virtual void wrtTechSupNoMak(std::wstring_view /*sMsg*/, bool /*bStamp*/) noexcept {}
};

}  // namespace kv::util
