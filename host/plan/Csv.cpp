#include "host/plan/Csv.h"

#include <bit>
#include <cstdint>

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

/// Decodes one line. Overlong forms are refused, because they would allow two spellings of the same key.
class LineDecoder {
  public:
    LineDecoder(std::string_view bytes, std::size_t line) : bytes_(bytes), line_(line) {}

    std::u32string decode() {
        while (position_ < bytes_.size()) {
            text_.push_back(one());
        }
        return std::move(text_);
    }

  private:
    char32_t one() {
        const auto first = static_cast<unsigned char>(bytes_[position_++]);
        if (first == 0) {
            fail();
        }
        if (first < 0x80) {
            return first;
        }
        const int length = std::countl_one(first);
        if (length < 2 || length > 4) {
            fail();
        }
        char32_t c = first & (0x7FU >> length);
        for (int i = 1; i < length; ++i) {
            c = (c << 6) | continuation();
        }
        static constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (c < kSmallest[length] || c > kLargest || (c >= 0xD800 && c <= 0xDFFF)) {
            fail();
        }
        return c;
    }

    char32_t continuation() {
        if (position_ == bytes_.size()) {
            fail();
        }
        const auto byte = static_cast<unsigned char>(bytes_[position_++]);
        if ((byte & 0xC0) != 0x80) {
            fail();
        }
        return byte & 0x3F;
    }

    [[noreturn]] void fail() const {
        throw CsvFault{line_, text_.size() + 1, L"expected text in UTF-8; save the file in that encoding"};
    }

    std::string_view bytes_;
    std::size_t line_;
    std::size_t position_ = 0;
    std::u32string text_;
};

class LineCutter {
  public:
    LineCutter(const std::u32string& text, std::size_t line) : text_(text), line_(line) {}

    std::vector<CsvField> cut() {
        std::vector<CsvField> fields;
        for (;;) {
            fields.push_back(field());
            if (position_ == text_.size()) {
                return fields;
            }
            ++position_;  // the comma
        }
    }

  private:
    CsvField field() {
        skipBlanks();
        CsvField result{{}, position_ + 1};
        if (position_ < text_.size() && text_[position_] == U'"') {
            quoted(result);
        } else {
            plain(result);
        }
        return result;
    }

    void plain(CsvField& result) {
        std::size_t end = position_;
        while (end < text_.size() && text_[end] != U',') {
            if (text_[end] == U'"') {
                throw CsvFault{line_, end + 1, L"expected the quotes to enclose the whole field"};
            }
            ++end;
        }
        std::size_t last = end;
        while (last > position_ && isBlank(text_[last - 1])) {
            --last;
        }
        for (; position_ < last; ++position_) {
            append(result.text, text_[position_]);
        }
        position_ = end;
    }

    void quoted(CsvField& result) {
        const std::size_t opening = position_++;
        for (;; ++position_) {
            if (position_ == text_.size()) {
                throw CsvFault{line_, opening + 1, L"expected a closing quote before the end of the line"};
            }
            if (text_[position_] == U'"' && !skipFirstOfDoubled()) {
                break;
            }
            append(result.text, text_[position_]);
        }
        ++position_;
        skipBlanks();
        if (position_ < text_.size() && text_[position_] != U',') {
            throw CsvFault{line_, position_ + 1, L"expected a comma after the closing quote"};
        }
    }

    bool skipFirstOfDoubled() {
        const bool doubled = position_ + 1 < text_.size() && text_[position_ + 1] == U'"';
        position_ += doubled ? 1 : 0;
        return doubled;
    }

    void skipBlanks() {
        while (position_ < text_.size() && isBlank(text_[position_])) {
            ++position_;
        }
    }

    const std::u32string& text_;
    std::size_t line_;
    std::size_t position_ = 0;
};

bool isEmpty(const std::u32string& text) {
    for (const char32_t c : text) {
        if (!isBlank(c)) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::vector<CsvLine> readCsv(std::string_view bytes) {
    static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kByteOrderMark)) {
        bytes.remove_prefix(kByteOrderMark.size());
    }
    std::vector<CsvLine> lines;
    for (std::size_t number = 1; !bytes.empty(); ++number) {
        const std::size_t end = bytes.find('\n');
        std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        const std::u32string text = LineDecoder(line, number).decode();
        if (!isEmpty(text) && text.front() != U'#') {
            lines.push_back({number, LineCutter(text, number).cut()});
        }
    }
    return lines;
}

}  // namespace kv::host
