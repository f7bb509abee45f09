#include "host/hits/HitCsv.h"

#include <fstream>
#include <system_error>

#include "host/hits/HitTexts.h"
#include "util/Utf8.h"

namespace kv::host {

namespace {

constexpr std::size_t kBlock = 1U << 16U;  // bytes that are written at once
constexpr int kMostNames = 1000;

std::string field(const std::wstring& text) {
    const bool blankAtEnd = !text.empty() && (text.front() == L' ' || text.back() == L' ');
    if (!blankAtEnd && text.find_first_of(L",\"\r\n") == std::wstring::npos) {
        return util::toUtf8(text);
    }
    std::wstring quoted(1, L'"');
    for (const wchar_t character : text) {
        quoted += character;
        if (character == L'"') {
            quoted += L'"';
        }
    }
    quoted += L'"';
    return util::toUtf8(quoted);
}

template <class TextOf>
std::string line(TextOf textOf) {
    std::string bytes;
    for (std::size_t column = 0; column < kHitColumns; ++column) {
        if (column != 0) {
            bytes += ',';
        }
        bytes += field(textOf(static_cast<HitColumn>(column)));
    }
    bytes += "\r\n";
    return bytes;
}

/// A file that is deleted at the end if it has not been renamed.
class NewFile {
  public:
    explicit NewFile(const std::filesystem::path& target) : target_(target), name_(unusedName(target)) {
        stream_.open(name_, std::ios::binary);
        if (!stream_) {
            throw HitsNotSaved(L"no file can be created in its folder");
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() {
        if (!renamed_) {
            stream_.close();
            std::error_code ignored;
            std::filesystem::remove(name_, ignored);
        }
    }

    void write(const std::string& bytes) { stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size())); }
    void finish() {
        stream_.close();
        if (stream_.fail()) {
            throw HitsNotSaved(L"writing failed; the disk may be full");
        }
        std::error_code error;
        std::filesystem::rename(name_, target_, error);
        if (error) {
            throw HitsNotSaved(L"the file that has this name cannot be replaced; another program may have it open");
        }
        renamed_ = true;
    }

  private:
    static std::filesystem::path unusedName(const std::filesystem::path& target) {
        for (int number = 1; number <= kMostNames; ++number) {
            std::filesystem::path name = target;
            name += ".";
            name += std::to_string(number);
            name += ".tmp";
            if (std::error_code error; !std::filesystem::exists(name, error)) {
                return name;
            }
        }
        throw HitsNotSaved(L"its folder has too many temporary files with this name");
    }

    std::filesystem::path target_;
    std::filesystem::path name_;
    std::ofstream stream_;
    bool renamed_ = false;
};

void checkTarget(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::absolute(file, error).parent_path();
    if (!std::filesystem::is_directory(folder, error)) {
        throw HitsNotSaved(L"its folder does not exist");
    }
    if (std::filesystem::is_directory(file, error)) {
        throw HitsNotSaved(L"a folder has this name");
    }
}

}  // namespace

std::string hitHeader() {
    return line([](HitColumn column) { return std::wstring(headingOf(column)); });
}

std::string hitLine(const HitSite& site, const Hit& hit) {
    return line([&](HitColumn column) { return cellOf(column, site, hit); });
}

void saveHits(const std::filesystem::path& file, const HitFinder& finder, const HitRows& rows) {
    checkTarget(file);
    NewFile output(file);
    std::string bytes = hitHeader();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        bytes += hitLine(finder.site(), rows.at(row));
        if (bytes.size() >= kBlock) {
            output.write(bytes);
            bytes.clear();
        }
    }
    output.write(bytes);
    output.finish();
}

}  // namespace kv::host
