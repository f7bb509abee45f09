// The window of the sample host: menu, control and status bar.
#pragma once

#include <memory>
#include <optional>

#include "host/Loading.h"
#include "host/Spectrum.h"
#include "host/StatusBar.h"
#include "host/plan/CommandLine.h"
#include "host/plan/Plan.h"

namespace kv::host {

class MainWindow final : public ControlEvents {
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
    void showWindow();
    void layOut();
    void close() noexcept;
    /// Shows a failure in a message box. With --quit it writes the failure to standard error and ends the program.
    void report(const Failure& failure);
    void finish(int exitCode);

    void command(int id);
    void enableCommands(HMENU menu) const;
    void openPlan();
    void savePicture();
    void copyPicture();
    void showAll();
    void redraw();
    void openMouseReport();
    void toggleOrder(bool& order);

    void load(const std::wstring& file);
    void startLoading();
    void continueLoading();
    void cancelLoading();
    void loaded(const std::wstring& message);
    void writePicture(const std::wstring& file);
    void updateRange();
    void handleQueued();
    void dispatch(MSG& message);

    void gridRangeChosen() override;
    void heightChanged(int twips) override;
    void rangeChanged(double lowest, double highest) override;
    void followHeight(int pixels);

    CommandLine options_;
    ControlClasses classes_;
    HWND window_ = nullptr;
    HACCEL keys_ = nullptr;
    std::optional<StatusBar> status_;
    std::unique_ptr<Spectrum> spectrum_;
    Plan plan_;
    std::wstring planName_;
    std::unique_ptr<Loading> loading_;
    bool ended_ = false;
    int exitCode_ = kExitOk;
};

}  // namespace kv::host
