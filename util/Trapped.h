// The one way in which a procedure traps its run-time errors: its body runs inside `reported` or `noted`.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "util/ErrHand.h"
#include "util/RuntimeError.h"

namespace kv::util {

/// The number of the step that a procedure is at, for the record of an error.
using Step = std::int16_t;

/// Runs `body(step)`, where `step` starts at `first`; an error in it goes to the error reporter, which shows a message.
/// False after an error. Needs no memory, so that running out of it can be reported as well.
template <class Body>
bool reported(ErrorReporter& errors, const wchar_t* procedure, Body&& body, std::wstring_view detail = {},
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

namespace detail_text {

/// Passes `tell` the text that `detail` makes, or no text when there is no memory for it.
template <class Detail, class Tell>
void withText(Detail&& detail, Step step, Tell&& tell) {
    try {
        const auto text = std::forward<Detail>(detail)(step);
        tell(std::wstring_view(text));
    } catch (...) {
        tell(std::wstring_view());
    }
}

}  // namespace detail_text

/// The same with a context text that is made only when there is an error, by `detail(step)`.
template <class Body, std::invocable<Step> Detail>
bool reported(ErrorReporter& errors, const wchar_t* procedure, Body&& body, Detail&& detail, Step first = 100) {
    Step step = first;
    try {
        std::forward<Body>(body)(step);
        return true;
    } catch (...) {
        const RuntimeError error = currentError();
        detail_text::withText(std::forward<Detail>(detail), step,
                              [&](std::wstring_view text) { errors.ErrHand(step, procedure, text, error); });
        return false;
    }
}

/// The same without a message to the user.
template <class Body>
bool noted(ErrorReporter& errors, const wchar_t* procedure, Body&& body, Step first = 100) {
    Step step = first;
    try {
        std::forward<Body>(body)(step);
        return true;
    } catch (...) {
        errors.ErrNote(step, procedure, {}, currentError());
        return false;
    }
}

template <class Body, std::invocable<Step> Detail>
bool noted(ErrorReporter& errors, const wchar_t* procedure, Body&& body, Detail&& detail, Step first = 100) {
    Step step = first;
    try {
        std::forward<Body>(body)(step);
        return true;
    } catch (...) {
        const RuntimeError error = currentError();
        detail_text::withText(std::forward<Detail>(detail), step,
                              [&](std::wstring_view text) { errors.ErrNote(step, procedure, text, error); });
        return false;
    }
}

}  // namespace kv::util
