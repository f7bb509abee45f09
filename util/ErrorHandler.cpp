#include "util/ErrorHandler.h"

#include <atomic>
#include <string>

#include "util/Text.h"

namespace kv::util {

namespace {

constexpr wchar_t kGap[] = L"\r\n\r\n";
constexpr wchar_t kSendIt[] =
    L"Faxing or e-mailing this file to Korvane may be helpful in determining the cause of the error.";
constexpr wchar_t kAddToIt[] =
    L"Additional information you include in your email will help find the specific problem you encountered:";
constexpr const wchar_t* kQuestions[] = {
    L"(1) What were you trying to do (such as draw a profile or compute a coverage study)?",
    L"(2) What part of the program were you in (which menu selection, etc.)?",
    L"(3) Exactly when did the problem happen (e.g., right after clicking a particular button or menu)?",
    L"(4) Any other details about the symptom."};

std::atomic<bool> messageOpen{false};

/// The place of the one message, for the time of a block.
class MessageTurn {
  public:
    MessageTurn() noexcept : mine_(!messageOpen.exchange(true)) {}
    ~MessageTurn() {
        if (mine_)
            messageOpen = false;
    }
    MessageTurn(const MessageTurn&) = delete;
    MessageTurn& operator=(const MessageTurn&) = delete;
    [[nodiscard]] bool mine() const noexcept { return mine_; }

  private:
    bool mine_;
};

}  // namespace

struct ErrorHandler::Record {
    Record(std::int16_t flag, std::wstring_view sProc, std::wstring_view sDetail, const RuntimeError& error)
        : head(L"Error " + std::to_wstring(error.number()) + L"  " + std::wstring(error.text())),
          procedure(L"Procedure: " + std::wstring(sProc) + L"; Flag " + std::to_wstring(flag)),
          detail(getLenTrim(sDetail) < 1 ? std::wstring() : L"DETAIL: " + std::wstring(sDetail)) {}

    std::wstring head;
    std::wstring procedure;
    std::wstring detail;  ///< empty: none
};

void ErrorHandler::ErrHand(std::int16_t flag, std::wstring_view sProc, std::wstring_view sDetail,
                           const RuntimeError& error) noexcept {
    try {
        const Record record(flag, sProc, sDetail, error);
        write(record);
        if (!user_.present())
            return;
        const MessageTurn turn;
        if (turn.mine())
            show(record);
    } catch (...) {
        // An error while reporting one. The first is in the log if that was possible.
    }
}

void ErrorHandler::ErrNote(std::int16_t flag, std::wstring_view sProc, std::wstring_view sDetail,
                           const RuntimeError& error) noexcept {
    try {
        write(Record(flag, sProc, sDetail, error));
    } catch (...) {
        // No memory for the texts.
    }
}

void ErrorHandler::write(const Record& record) {
    log_.wrtTechSupNoMak(std::wstring(25, L'*'), false);
    log_.wrtTechSupNoMak(record.head, true);
    log_.wrtTechSupNoMak(L"Procedures:", false);
    log_.wrtTechSupNoMak(record.procedure, false);
    if (!record.detail.empty())
        log_.wrtTechSupNoMak(record.detail, false);
}

void ErrorHandler::show(const Record& record) {
    std::wstring text = record.head + kGap + record.procedure;
    if (!record.detail.empty())
        text += L"\r\n" + record.detail;
    text += kGap;
    text += L"This information has been written to the log file\r\n" + log_.getTechSupPath() + L"\r\n" + kSendIt;
    text += kGap;
    text += kAddToIt;
    for (const wchar_t* question : kQuestions)
        text += kGap + std::wstring(question);
    user_.warn(text, L"Error in " + log_.hostName());
}

}  // namespace kv::util
