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

namespace trapping {

/// Runs `body(step)`; after an error `tell(step, error)`, which must not throw, and false.
template <class Body, class Tell>
bool trapped(Step first, Body&& body, Tell&& tell) {
    Step step = first;
    try {
        std::forward<Body>(body)(step);
        return true;
    } catch (...) {
        tell(step, currentError());
        return false;
    }
}

/// Passes `tell` the text that `detail(step)` makes, or no text when there is no memory for it.
template <class Detail, class Tell>
void withText(Detail&& detail, Step step, Tell&& tell) {
    try {
        const auto text = std::forward<Detail>(detail)(step);
        tell(std::wstring_view(text));
    } catch (...) {
        tell(std::wstring_view());
    }
}

}  // namespace trapping

/// Runs `body(step)`, where `step` starts at `first`; an error in it goes to the error reporter, which shows a message.
/// False after an error. Needs no memory, so that running out of it can be reported as well.
template <class Body>
bool reported(ErrorReporter& errors, const wchar_t* procedure, Body&& body, std::wstring_view detail = {},
              Step first = 100) {
    return trapping::trapped(first, std::forward<Body>(body), [&](Step step, const RuntimeError& error) {
        errors.ErrHand(step, procedure, detail, error);
    });
}

/// The same with a context text that is made only when there is an error, by `detail(step)`.
template <class Body, std::invocable<Step> Detail>
bool reported(ErrorReporter& errors, const wchar_t* procedure, Body&& body, Detail&& detail, Step first = 100) {
    return trapping::trapped(first, std::forward<Body>(body), [&](Step step, const RuntimeError& error) {
        trapping::withText(detail, step, [&](std::wstring_view text) { errors.ErrHand(step, procedure, text, error); });
    });
}

/// The same without a message to the user.
template <class Body>
bool noted(ErrorReporter& errors, const wchar_t* procedure, Body&& body, Step first = 100) {
    return trapping::trapped(first, std::forward<Body>(body),
                             [&](Step step, const RuntimeError& error) { errors.ErrNote(step, procedure, {}, error); });
}

template <class Body, std::invocable<Step> Detail>
bool noted(ErrorReporter& errors, const wchar_t* procedure, Body&& body, Detail&& detail, Step first = 100) {
    return trapping::trapped(first, std::forward<Body>(body), [&](Step step, const RuntimeError& error) {
        trapping::withText(detail, step, [&](std::wstring_view text) { errors.ErrNote(step, procedure, text, error); });
    });
}

}  // namespace kv::util
