// The one way in which a procedure traps its run-time errors: its body runs inside `reported` or `noted`.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <utility>

#include "util/ErrHand.h"
#include "util/RuntimeError.h"

namespace kv::util {

/// The number of the step that a procedure is at, for the record of an error.
using Step = std::int16_t;

/// Runs `body(step)`, where `step` starts at `first`; an error in it goes to the error reporter, which shows a message.
/// False after an error. `detail` is read when the error happens, so that `body` can set it.
template <class Body>
bool reported(ErrorReporter& errors, const wchar_t* procedure, Body&& body, const std::wstring& detail = {},
              Step first = 100) {
    Step step = first;
    try {
        std::forward<Body>(body)(step);
        return true;
    } catch (...) {
        errors.ErrHand(step, procedure, detail, currentError());
        return false;
    }
}

/// The same with a context text that is made only when there is an error, by `detail(step)`. Without memory for the
/// text the error is reported without one.
template <class Body, std::invocable<Step> Detail>
bool reported(ErrorReporter& errors, const wchar_t* procedure, Body&& body, Detail&& detail, Step first = 100) {
    Step step = first;
    try {
        std::forward<Body>(body)(step);
        return true;
    } catch (...) {
        const RuntimeError error = currentError();
        std::wstring text;
        try {
            text = detail(step);
        } catch (...) {
            text.clear();
        }
        errors.ErrHand(step, procedure, text, error);
        return false;
    }
}

/// The same without a message to the user.
template <class Body>
bool noted(ErrorReporter& errors, const wchar_t* procedure, Body&& body, const std::wstring& detail, Step first = 100) {
    Step step = first;
    try {
        std::forward<Body>(body)(step);
        return true;
    } catch (...) {
        errors.ErrNote(step, procedure, detail, currentError());
        return false;
    }
}

template <class Body>
bool noted(ErrorReporter& errors, const wchar_t* procedure, Body&& body, Step first = 100) {
    return noted(errors, procedure, std::forward<Body>(body), std::wstring(), first);
}

}  // namespace kv::util
