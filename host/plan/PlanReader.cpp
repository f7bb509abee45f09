// Reads a plan line by line and collects its errors.
#include <optional>
#include <utility>

#include "host/plan/ChannelReader.h"
#include "host/plan/Csv.h"
#include "host/plan/Plan.h"

namespace kv::host {

namespace {

// A site has far fewer. They are added to the control in one go, while the window handles no messages.
constexpr std::size_t kMostChannels = 100'000;

class PlanReader {
  public:
    PlanReader(std::string_view bytes, const std::wstring& fileName) : csv_(bytes), errors_(fileName) {}

    Plan read() {
        if (readColumns()) {
            readChannels();
        }
        errors_.throwIfAny();
        if (plan_.channels.empty()) {
            errors_.add(L"expected at least one channel below the line that names the columns");
        }
        errors_.throwIfAny();
        return std::move(plan_);
    }

  private:
    bool readColumns() {
        try {
            const std::optional<CsvLine> line = csv_.next();
            if (line) {
                return columns_.read(*line, errors_);
            }
            errors_.add(L"expected a line that names the columns, but the file has none");
        } catch (CsvFault& fault) {
            add(fault);
        }
        return false;
    }

    void readChannels() {
        ChannelReader reader(columns_, errors_);
        std::size_t lines = 0;
        while (const std::optional<CsvLine> line = next()) {
            if (lines++ == kMostChannels) {
                errors_.add(line->number, 1, {},
                            L"expected at most " + std::to_wstring(kMostChannels) + L" channels in a plan");
                return;
            }
            if (std::optional<PlanChannel> channel = reader.read(*line)) {
                plan_.channels.push_back(*std::move(channel));
            }
        }
    }

    /// The next line that can be cut into fields; none at the end, and when no more errors are listed.
    std::optional<CsvLine> next() {
        while (!errors_.isFull()) {
            try {
                return csv_.next();
            } catch (CsvFault& fault) {
                add(fault);
            }
        }
        return std::nullopt;
    }

    void add(CsvFault& fault) { errors_.add(fault.line, fault.column, {}, std::move(fault.message)); }

    CsvReader csv_;
    PlanErrorList errors_;
    PlanColumns columns_;
    Plan plan_;
};

}  // namespace

Plan parsePlan(std::string_view bytes, const std::wstring& fileName) {
    return PlanReader(bytes, fileName).read();
}

}  // namespace kv::host
