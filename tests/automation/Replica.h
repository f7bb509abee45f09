// A container that makes the calls of a known kind of container, step by step. The steps are tables in the test files
// that are named after the containers.
#pragma once

#include <span>

#include "tests/automation/Container.h"

namespace kv::test {

class Replica : public FullContainer {
  public:
    /// One step of a container; it checks the results that the container relies on.
    struct Step {
        const char* name;
        void (*run)(Replica&);
    };

    Replica();

    ComPtr<EventSink> events;
    ComPtr<PropertySink> properties;
    ComPtr<IStream> stream;  ///< what the control is loaded from

    /// Runs the steps in their order. A failed one is named.
    void play(std::span<const Step> steps);

    [[nodiscard]] SIZEL extent() const;
    /// Sets the extent and returns the one that the control reports afterwards.
    SIZEL setExtent(const SIZEL& size) const;
    /// Size of the control's window, pixels; 0 x 0 without one.
    [[nodiscard]] SIZE window() const { return Container::size(); }
    [[nodiscard]] bool isHidden() const;
    HRESULT place(const RECT& place, const RECT* clip) const;
    HRESULT verbAt(LONG number, LONG index, HWND parent, const RECT* place) const;

    // Steps that many containers have in common.
    static void adviseEvents(Replica& container);
    static void unadviseEvents(Replica& container);
    static void adviseProperties(Replica& container);
    static void unadviseProperties(Replica& container);
    static void adviseObject(Replica& container);
    static void unadviseObject(Replica& container);
    static void adviseView(Replica& container);
    static void setHostNames(Replica& container);
    static void initNew(Replica& container);
    static void load(Replica& container);
    static void setSite(Replica& container);
    static void unsite(Replica& container);
    static void close(Replica& container);
    static void uiDeactivate(Replica& container);
    static void deactivate(Replica& container);
    static void freeze(Replica& container);
    static void thaw(Replica& container);
    static void release(Replica& container);

    /// Every part of the layout is where a control of this height has it, and the panel ends at its lower edge.
    void expectLaidOutFor(const SIZE& size) const;
    /// Nothing of the control is left, and it has released the container's sinks.
    void expectAllReleased();

  private:
    [[nodiscard]] ComPtr<IConnectionPoint> point(REFIID iid) const;

    DWORD eventCookie_ = 0;
    DWORD propertyCookie_ = 0;
    DWORD objectCookie_ = 0;
};

using Step = Replica::Step;

/// Rounded as containers do: half of the divisor is added before the division.
[[nodiscard]] SIZEL himetricOf(const SIZE& pixels, int dpi = 96);
[[nodiscard]] SIZE pixelsOf(const SIZEL& himetric, int dpi = 96);
[[nodiscard]] bool isSize(const SIZE& size, LONG width, LONG height);

}  // namespace kv::test
