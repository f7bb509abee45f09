#include "host/HitsFile.h"

#include "host/Com.h"
#include "host/hits/HitCsv.h"
#include "host/hits/HitTexts.h"

namespace kv::host {

void saveHitsAs(const std::wstring& file, const HitFinder& finder, const HitRows& rows) {
    try {
        saveHits(file, finder, rows);
    } catch (const HitsNotSaved& error) {
        throw Failure{kExitSaveFailed, L"The hits could not be saved as " + file + L": " + error.reason() + L"."};
    } catch (const std::filesystem::filesystem_error&) {
        throw Failure{kExitSaveFailed,
                      L"The hits could not be saved as " + file + L": this is not a usable file name."};
    }
}

void findAndSaveHits(const std::wstring& file, const Plan& plan, const ProductOptions& options) {
    HitFinder finder(plan, options);
    while (finder.step() == HitFinder::State::kFinding) {
    }
    if (finder.state() == HitFinder::State::kFull) {
        throw Failure{kExitUsage, L"The hits were not saved as " + file + L". " + tooManyHits(finder)};
    }
    saveHitsAs(file, finder, HitRows(finder));
}

}  // namespace kv::host
