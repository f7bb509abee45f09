#include "util/LogLine.h"

#include <cstddef>

namespace kv::util {

namespace {

std::wstring padded(int number, std::size_t digits) {
    std::wstring text = std::to_wstring(number);
    if (text.size() < digits)
        text.insert(0, digits - text.size(), L'0');
    return text;
}

}  // namespace

std::wstring logTime(const DateTime& time) {
    return padded(time.year, 4) + L'-' + padded(time.month, 2) + L'-' + padded(time.day, 2) + L' ' +
           padded(time.hour, 2) + L':' + padded(time.minute, 2) + L':' + padded(time.second, 2);
}

std::wstring logLine(const DateTime& time, const std::wstring& message) {
    return logTime(time) + L":  " + message + L"\r\n";
}

}  // namespace kv::util
