// Numbers as text: the number formats of labels, knobs and reports. The user's locale never matters.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv::util {

/// Writes `value` by a format such as "0.000", "##0.00000" or "00".
///
/// The format:
/// - '0' is a digit that is always shown, '#' one that is shown when it is significant. Whole digits without a
/// placeholder are
///   shown too; a '0' makes every placeholder between it and the point a '0'.
/// - The first '.' among the placeholders, or directly before the first one, is the decimal point. It is shown only
///   with at least one decimal after it: 5 by "0.##" is "5". "#" and "#.##" give an empty text for 0.
/// - Text before the first and after the last placeholder is shown as it is. Text between placeholders is shown while
///   digits remain beyond it; a ',' among the whole digits parts them into groups of three with commas.
/// - A format without any placeholder is shown as it is. An empty one gives the shortest decimal text that reads back
///   as `value`, written out without an exponent.
///
/// Rounding is half away from zero, applied to that shortest decimal text and not to the binary value: 1.005 by "0.00"
/// is "1.01". A minus sign precedes everything else, and is left out when all digits round to zero.
/// NaN and infinities are "NaN", "Infinity" and "-Infinity", whatever the format.
[[nodiscard]] std::wstring formatNumber(double value, std::wstring_view format);
/// The same into a text that is kept, so that thousands of labels do not need memory for each.
void formatNumber(double value, std::wstring_view format, std::wstring& text);

/// Reads a decimal number: blanks around it, one sign in front, digits with at most one '.', an exponent. Nothing for
/// any other text and for a number too large for a double; one too small for a double is 0.
[[nodiscard]] std::optional<double> parseNumber(std::wstring_view text);

/// The numeric text `number` as its absolute value by `format`, followed by its sign: "+" for 0 or above, "-" below 0,
/// also when the digits shown are all zero. A text that parseNumber does not accept comes back unchanged.
///
/// A `widthBefore` above 0 then pads with blanks on the left to that many characters, sign included, which lines up
/// the signs of a column; a `widthAfter` above 0 pads with blanks on the right to that many characters in all. A longer
/// text is never cut.
[[nodiscard]] std::wstring signedNumberText(std::wstring_view number, std::wstring_view format,
                                            std::int16_t widthBefore, std::int16_t widthAfter);

}  // namespace kv::util
