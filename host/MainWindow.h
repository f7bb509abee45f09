// The window of the sample host: menu, control and status bar.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "host/FileDrop.h"
#include "host/FileStamp.h"
#include "host/HitsWindow.h"
#include "host/Loading.h"
#include "host/SettingsFile.h"
#include "host/Spectrum.h"
#include "host/StatusBar.h"
#include "host/plan/CommandLine.h"
#include "host/plan/Plan.h"

namespace kv::host {

class MainWindow final : public ControlEvents, public HitsOwner {
  public:
    explicit MainWindow(const CommandLine& options);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    ~MainWindow();

    /// Opens the plan of the command line, then handles messages until the window closes. Returns the exit code of the
    /// process.
    [[nodiscard]] int run();

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] LRESULT handle(UINT message, WPARAM first, LPARAM second);
    void create();
    /// Moves the new window to where it was the last time.
    void restorePlace();
    /// The place may be from another resolution or from a file that was edited.
    void keepLeastSize() const;
    void restoreOptions();
    void rememberWindow() noexcept;
    void showWindow();
    void layOut();
    void close() noexcept;
    /// Reports the exception that is being handled, in a message box. With --quit it is written to standard error and
    /// the program ends.
    void reportCurrent() noexcept;
    void report(const Failure& failure);
    void finish(int exitCode);

    void command(int id);
    void enableCommands(HMENU menu) const;
    void openPlan();
    /// Opens a plan with the present orders.
    void openAnother(const std::wstring& file);
    void openRecent(std::size_t index);
    void openDropped();
    void rememberPlan();
    void fillRecentPlans(HMENU menu);
    /// F5: opens the plan again if its file has changed.
    void reloadOrRedraw();
    void reload();
    void showAboutBox();
    [[nodiscard]] RangeMhz shownRange() const;
    void savePicture();
    void printPicture();
    void copyPicture();
    void showAll();
    void redraw();
    void openMouseReport();
    void zoom(double factor);
    void go(HRESULT (STDMETHODCALLTYPE _BandscopeView::*step)(VARIANT_BOOL*));
    /// The commands that switch a property of the view.
    [[nodiscard]] bool toggleView(int id);
    void enableView(HMENU menu) const;
    void toggleOrder(bool ProductOptions::*order);

    /// What the window shows, or is about to show.
    struct Shown {
        Plan plan;
        std::wstring name;  ///< of the plan's file; empty without a plan
        ProductOptions products;
        std::optional<RangeMhz> range;
        std::size_t productCount = 0;
        std::wstring path;               ///< of the plan's file
        std::optional<FileStamp> stamp;  ///< of the file as it was read
    };
    /// A plan that is being opened. Until that has succeeded, `shown_` is the earlier one.
    struct Opening {
        Opening(_kvBandscope& control, IClassFactory& freqSlot, Shown wanted, const std::optional<RangeMhz>& kept)
            : next(std::move(wanted)), loading(control, freqSlot, next.plan, next.products, next.range, kept) {}
        Opening(const Opening&) = delete;
        Opening& operator=(const Opening&) = delete;

        Shown next;
        Loading loading;
        std::wstring message;  ///< of the status bar, when the plan has been opened
    };

    void openFirst();
    void load(const std::wstring& file, const ProductOptions& products, const std::optional<RangeMhz>& range,
              const std::optional<RangeMhz>& kept = std::nullopt);
    void open(Shown next, const std::optional<RangeMhz>& kept = std::nullopt);
    void continueOpening();
    void cancelProducts();
    void opened(const std::wstring& message);
    /// After a failure: the window describes the earlier plan again, which the control already shows.
    void abandonOpening();
    void describe(const Shown& shown);
    /// Runs a part of an opening. If it fails, the opening is abandoned and the failure reported.
    template <class Work>
    void guarded(Work work) noexcept;
    void writePicture(const std::wstring& file);
    void updateRange() noexcept;
    void handleQueued();
    void dispatch(MSG& message);

    void openHits();
    void followHits();
    void writeHits();
    void drawSpot(const Spot& spot);
    void showSpot(const Spot& spot, const std::wstring& text) override;
    void findHits() override;
    void saveShownHits() override;
    void focusSpectrum() override;
    void reportHitsFailure() noexcept override;

    void gridRangeChosen() override;
    void heightChanged(int twips) override;
    void rangeChanged(double lowest, double highest) override;
    void followHeight(int pixels);

    CommandLine options_;
    SettingsFile settings_;
    ChosenOptions chosen_;                   // in this run
    std::vector<std::wstring> recentPlans_;  // as the menu showed them last
    bool startsMaximized_ = false;
    ControlClasses classes_;
    HWND window_ = nullptr;
    HACCEL keys_ = nullptr;
    std::optional<StatusBar> status_;
    std::unique_ptr<Spectrum> spectrum_;
    std::unique_ptr<FileDrop> drop_;
    Shown shown_;
    std::unique_ptr<Opening> opening_;
    std::unique_ptr<HitsWindow> hits_;  // created when it is first opened
    std::optional<std::pair<Spot, std::wstring>> nextSpot_;
    bool ended_ = false;
    int exitCode_ = kExitOk;
};

}  // namespace kv::host
