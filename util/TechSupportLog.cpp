#include "util/TechSupportLog.h"

#include "util/LogLine.h"
#include "util/Text.h"

namespace kv::util {

void TechSupportLog::wrtTechSupNoMak(std::wstring_view sMsg, bool bStamp) noexcept {
    try {
        std::wstring message(sMsg);
        if (bStamp)
            message += L"  (" + system_.host.name + L" " + system_.host.version + L")";
        system_.files.append(getTechSupPath(), logLine(system_.now(), message) + L" \r\n");
    } catch (...) {
        // If the log cannot be written, the failure is ignored.
    }
}

std::wstring TechSupportLog::getTechSupPath() noexcept {
    try {
        const std::lock_guard lock(mutex_);
        if (path_.empty())
            path_ = setPathName(configuration_.getKorvaneDirectory(), L"KVTECSUP.TXT");
        return path_;
    } catch (...) {
        return {};
    }
}

}  // namespace kv::util
