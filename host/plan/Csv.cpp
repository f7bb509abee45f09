#include "host/plan/Csv.h"

#include <bit>
#include <string>
#include <utility>

namespace kv::host {

namespace {

constexpr char32_t kLargest = 0x10FFFF;

bool isBlank(char32_t c) {
    return c == U' ' || c == U'\t';
}

void append(std::wstring& text, char32_t c) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (c > 0xFFFF) {
            c -= 0x10000;
            text.push_back(static_cast<wchar_t>(0xD800 + (c >> 10)));
            text.push_back(static_cast<wchar_t>(0xDC00 + (c & 0x3FF)));
            return;
        }
    }
    text.push_back(static_cast<wchar_t>(c));
}

/// The characters of one line, decoded one at a time. Overlong forms are refused, because they would allow two
/// spellings of the same key.
class LineText {
  public:
    LineText(std::string_view bytes, std::size_t line) : bytes_(bytes), line_(line) { decode(); }

    [[nodiscard]] bool atEnd() const noexcept { return now_ == kEnd; }
    /// The character at the present position; equal to no character at the end.
    [[nodiscard]] char32_t now() const noexcept { return now_; }
    /// The present position, counted from 1.
    [[nodiscard]] std::size_t column() const noexcept { return column_; }
    void advance() {
        ++column_;
        decode();
    }
    void skipBlanks() {
        while (isBlank(now_)) {
            advance();
        }
    }
    [[noreturn]] void fail(std::size_t column, std::wstring message) const {
        throw CsvFault{line_, column, std::move(message)};
    }

  private:
    static constexpr char32_t kEnd = 0xFFFFFFFF;

    void decode() { now_ = position_ == bytes_.size() ? kEnd : one(); }

    char32_t one() {
        const auto first = static_cast<unsigned char>(bytes_[position_++]);
        if (first == 0) {
            failEncoding();
        }
        if (first < 0x80) {
            return first;
        }
        const int length = std::countl_one(first);
        if (length < 2 || length > 4) {
            failEncoding();
        }
        char32_t c = first & (0x7FU >> length);
        for (int i = 1; i < length; ++i) {
            c = (c << 6) | continuation();
        }
        static constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (c < kSmallest[length] || c > kLargest || (c >= 0xD800 && c <= 0xDFFF)) {
            failEncoding();
        }
        return c;
    }

    char32_t continuation() {
        if (position_ == bytes_.size()) {
            failEncoding();
        }
        const auto byte = static_cast<unsigned char>(bytes_[position_++]);
        if ((byte & 0xC0) != 0x80) {
            failEncoding();
        }
        return byte & 0x3F;
    }

    [[noreturn]] void failEncoding() const { fail(column_, L"expected text in UTF-8; save the file in that encoding"); }

    std::string_view bytes_;
    std::size_t line_;
    std::size_t position_ = 0;  // of the byte after the present character
    std::size_t column_ = 1;
    char32_t now_ = kEnd;
};

/// Cuts a line into its fields.
class LineCutter {
  public:
    explicit LineCutter(LineText& text) : text_(text) {}

    std::vector<CsvField> cut() {
        std::vector<CsvField> fields;
        for (;;) {
            if (fields.size() == kMostFields) {
                text_.fail(text_.column(), L"expected at most " + std::to_wstring(kMostFields) + L" fields in a line");
            }
            fields.push_back(field());
            if (text_.atEnd()) {
                return fields;
            }
            text_.advance();  // the comma
        }
    }

  private:
    CsvField field() {
        text_.skipBlanks();
        CsvField result{{}, text_.column()};
        length_ = 0;
        if (text_.now() == U'"') {
            enclosed(result);
        } else {
            plain(result);
        }
        return result;
    }

    void plain(CsvField& result) {
        std::size_t end = 0;  // of the text without the blanks behind it
        while (!text_.atEnd() && text_.now() != U',') {
            if (text_.now() == U'"') {
                const std::wstring hint = wrongSeparator(result.text);
                text_.fail(text_.column(), hint.empty() ? L"expected the quotes to enclose the whole field" : hint);
            }
            const bool blank = isBlank(text_.now());
            take(result);
            end = blank ? end : result.text.size();
        }
        result.text.resize(end);
    }

    void enclosed(CsvField& result) {
        text_.advance();
        for (;;) {
            if (text_.atEnd()) {
                text_.fail(result.column, L"expected a closing quote before the end of the line");
            }
            if (text_.now() == U'"') {
                text_.advance();
                if (text_.now() != U'"') {  // a doubled quote is one character of the field
                    break;
                }
            }
            take(result);
        }
        text_.skipBlanks();
        if (!text_.atEnd() && text_.now() != U',') {
            const std::wstring hint = text_.now() == U';' ? wrongSeparator(L";") : L"";
            text_.fail(text_.column(), hint.empty() ? L"expected a comma after the closing quote" : hint);
        }
    }

    void take(CsvField& result) {
        if (++length_ > kMostFieldCharacters) {
            text_.fail(result.column, L"expected a field of at most " + std::to_wstring(kMostFieldCharacters) +
                                          L" characters, but the field is longer");
        }
        append(result.text, text_.now());
        text_.advance();
    }

    LineText& text_;
    std::size_t length_ = 0;  // of the present field, in characters
};

/// Whether the line is empty or a comment. Leaves `text` at its first character that is not a blank.
bool holdsNoFields(LineText& text) {
    const bool comment = text.now() == U'#';
    while (comment && !text.atEnd()) {
        text.advance();  // a comment must be UTF-8, too
    }
    text.skipBlanks();
    return text.atEnd();
}

}  // namespace

CsvReader::CsvReader(std::string_view bytes) : bytes_(bytes) {
    static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (bytes_.starts_with(kByteOrderMark)) {
        bytes_.remove_prefix(kByteOrderMark.size());
    }
}

std::optional<CsvLine> CsvReader::next() {
    while (!bytes_.empty()) {
        const std::string_view line = takeLine();
        LineText text(line, number_);
        if (!holdsNoFields(text)) {
            return CsvLine{number_, LineCutter(text).cut()};
        }
    }
    return std::nullopt;
}

std::string_view CsvReader::takeLine() {
    ++number_;
    const std::size_t end = bytes_.find('\n');
    std::string_view line = bytes_.substr(0, end);
    bytes_.remove_prefix(end == std::string_view::npos ? bytes_.size() : end + 1);
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

std::wstring wrongSeparator(std::wstring_view field) {
    const std::size_t found = field.find_first_of(L";\t");
    if (found == std::wstring_view::npos) {
        return {};
    }
    return std::wstring(L"expected fields that are separated by commas, found ") +
           (field[found] == L';' ? L"semicolons (;)" : L"tabs") +
           L"; save the file with commas between the fields and with decimal points in the numbers";
}

}  // namespace kv::host
