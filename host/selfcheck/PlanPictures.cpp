// Draws every plan beside the program and compares the pictures with reference pictures. With the option for it, writes
// the reference pictures instead.
#include <algorithm>

#include "host/selfcheck/Comparison.h"
#include "host/selfcheck/PlainDpi.h"
#include "host/selfcheck/Sample.h"
#include "host/selfcheck/Steps.h"

namespace kv::host {

namespace {

constexpr int kPlainDpi = 96;
// The spectrum in it is 896 x 400 pixels. Multiples of large powers of two have few round frequencies half way between
// two pixels, where the last bit of a number would decide.
constexpr PictureSize kSize = {923, 424, kPlainDpi};
constexpr COLORREF kTextColor = RGB(0x33, 0x3D, 0x4A);
constexpr COLORREF kOtherTextColor = RGB(0xD0, 0x20, 0xA0);
// With more text than this, the comparison would be worth little.
constexpr double kMostText = 0.1;

std::vector<std::wstring> plansIn(const std::wstring& folder) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW((folder + L"*.csv").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        names.emplace_back(found.cFileName);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

Plan planOf(const std::wstring& file) {
    try {
        return loadPlan(file);
    } catch (const PlanError& error) {
        throw Failure{kExitOther, error.text()};
    }
}

Pixels drawn(const Context& context, const std::wstring& plan) {
    const ComPtr<_kvBandscope> control = newControl(context);
    show(*control.Get(), *context.classes->freqSlot.Get(), planOf(context.programFolder + L"plans\\" + plan));
    const Pixels picture = savedPicture(context, *control.Get(), kSize);
    check(control->put_lColorLblFore(kOtherTextColor), L"Setting lColorLblFore");
    const Pixels other = savedPicture(context, *control.Get(), kSize);
    check(control->put_lColorLblFore(kTextColor), L"Setting lColorLblFore");
    check(control->ClearAllChnls(), L"ClearAllChnls");
    return withTextMarked(picture, other);
}

std::wstring percent(double part) {
    const auto tenths = static_cast<int>(part * 1000.0 + 0.5);
    return std::to_wstring(tenths / 10) + L"." + std::to_wstring(tenths % 10) + L" %";
}

class PlanPicture {
  public:
    PlanPicture(Context& context, const std::wstring& plan)
        : context_(context),
          name_(plan.substr(0, plan.find_last_of(L'.'))),
          title_(L"Picture of " + plan),
          picture_(drawn(context, plan)) {}

    void write() const {
        writePng(context_.options.picturesFolder + L"\\" + name_ + L".png", picture_);
        context_.report.passed(title_, L"written");
    }

    void compareWithReference() const {
        for (const wchar_t* const part : {L"drawn", L"expected", L"difference"}) {
            DeleteFileW(saved(part).c_str());  // of an earlier check
        }
        const double text =
            static_cast<double>(countColor(picture_, kTextMark)) / static_cast<double>(picture_.rgb.size());
        const Pixels reference = readPicture(context_.programFolder + L"pictures\\" + name_ + L".png");
        const std::optional<Comparison> comparison = compare(picture_, reference);
        if (!comparison) {
            context_.report.differs(title_, L"it has " + picture_.sizeText() + L" pixels, not " + reference.sizeText());
        } else if (comparison->different > 0) {
            reportDifference(*comparison, reference);
        } else if (text > kMostText) {
            context_.report.failed(title_, percent(text) + L" of it is text, which is not compared");
        } else {
            context_.report.passed(title_, std::to_wstring(comparison->compared) + L" of " +
                                               std::to_wstring(picture_.rgb.size()) +
                                               L" pixels are equal; the others are text");
        }
    }

  private:
    [[nodiscard]] std::wstring saved(const wchar_t* part) const {
        return context_.report.beside(L"-" + name_ + L"-" + part + L".png");
    }

    void reportDifference(const Comparison& comparison, const Pixels& reference) const {
        writePng(saved(L"drawn"), picture_);
        writePng(saved(L"expected"), reference);
        writePng(saved(L"difference"), comparison.marked);
        context_.report.differs(title_,
                                std::to_wstring(comparison.different) + L" of " + std::to_wstring(comparison.compared) +
                                    L" pixels, the first at " + std::to_wstring(comparison.firstX) + L", " +
                                    std::to_wstring(comparison.firstY) + L"; see " + nameOf(saved(L"drawn")) + L", " +
                                    nameOf(saved(L"expected")) + L" and " + nameOf(saved(L"difference")));
    }

    Context& context_;
    std::wstring name_;
    std::wstring title_;
    Pixels picture_;
};

void checkPlan(Context& context, const std::wstring& plan) {
    try {
        const PlanPicture picture(context, plan);
        if (context.options.picturesFolder.empty()) {
            picture.compareWithReference();
        } else {
            picture.write();
        }
    } catch (const Failure& failure) {
        context.report.failed(L"Picture of " + plan, failure.text);
    }
}

}  // namespace

void checkPlans(Context& context) {
    const std::vector<std::wstring> plans = plansIn(context.programFolder + L"plans\\");
    if (plans.empty()) {
        throw Failure{kExitOther, L"there is no plan in the folder plans beside the program"};
    }
    const PlainDpi plain;
    if (const int dpi = screenDpi(); dpi != kPlainDpi) {
        // Labels and lines of the reference pictures are those of 96 dpi.
        context.report.notPossible(L"Pictures of the plans",
                                   L"this Windows shows every program at " + std::to_wstring(dpi) + L" dpi");
        return;
    }
    for (const std::wstring& plan : plans) {
        checkPlan(context, plan);
    }
}

}  // namespace kv::host
