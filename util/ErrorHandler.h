// The reporter of run-time errors: a record in the tech-support log, and a message that asks the user to send it.
#pragma once

#include "util/ErrHand.h"
#include "util/TechSupportLog.h"
#include "util/UserPrompt.h"

namespace kv::util {

/// The record is written first, so that it exists even if the message fails. One message is open at a time in the whole
/// process: events run while it is open, and errors meanwhile are only recorded. Without a user no message is shown.
class ErrorHandler final : public ErrorReporter {
  public:
    /// Both must live longer.
    ErrorHandler(TechSupportLog& log, UserPrompt& user) : log_(log), user_(user) {}

    void ErrHand(std::int16_t flag, std::wstring_view sProc, std::wstring_view sDetail,
                 const RuntimeError& error) noexcept override;
    void ErrNote(std::int16_t flag, std::wstring_view sProc, std::wstring_view sDetail,
                 const RuntimeError& error) noexcept override;
    void wrtTechSupNoMak(std::wstring_view sMsg, bool bStamp) noexcept override { log_.wrtTechSupNoMak(sMsg, bStamp); }

  private:
    struct Record;
    void write(const Record& record);
    void show(const Record& record);

    TechSupportLog& log_;
    UserPrompt& user_;
};

}  // namespace kv::util
