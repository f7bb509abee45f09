// The control in Qt's ActiveX widget (QAxWidget): the order of its calls, and what each of them relies on.
#include <docobj.h>
#include <gmock/gmock.h>
#include <olectl.h>

#include <set>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"
#include "tests/automation/Replica.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr SIZE kHint{250, 250};

/// The widget decides its size alone: it uses neither the extent that the control returns nor its requests.
class QAxWidget : public Replica {
  public:
    SIZE hint{};  ///< the first extent that the control returned

    explicit QAxWidget(const SIZE& size) { setPlace(size); }
    ~QAxWidget() { release(*this); }

    /// Sends what each resize and each show sends.
    void resize(const SIZE& size) {
        setPlace(size);
        SIZEL himetric = himetricOf(size);
        EXPECT_EQ(as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &himetric), S_OK);
        EXPECT_EQ(place(site->place, &site->place), S_OK);
    }
    SIZE minimumSizeHint() { return pixelsOf(setExtent({0, 0})); }
    void create();

  private:
    void setPlace(const SIZE& size) { site->place = {0, 0, size.cx, size.cy}; }
};

QAxWidget& qAxWidget(Replica& container) {
    return static_cast<QAxWidget&>(container);
}

void askForAmbients(Replica& container) {
    const auto control = container.as<IOleControl>();
    for (const DISPID id :
         {DISPID_AMBIENT_BACKCOLOR, DISPID_AMBIENT_FORECOLOR, DISPID_AMBIENT_FONT, DISPID_AMBIENT_USERMODE})
        EXPECT_EQ(control->OnAmbientPropertyChange(id), S_OK);
    CONTROLINFO info{};
    info.cb = sizeof info;
    EXPECT_EQ(control->GetControlInfo(&info), S_OK);
}

void activateWidget(Replica& container) {
    EXPECT_EQ(container.verbAt(OLEIVERB_INPLACEACTIVATE, 0, container.host.get(), &container.site->place), S_OK);
    EXPECT_TRUE(container.root());
}

constexpr Step kWidgetCreation[] = {
    {"new", &Replica::initNew},
    {"site", &Replica::setSite},
    {"view changes", &Replica::adviseView},
    {"changes of the object", &Replica::adviseObject},
    {"host names", &Replica::setHostNames},
    {"size hint", [](Replica& r) { qAxWidget(r).hint = pixelsOf(r.setExtent(himetricOf(kHint))); }},
    {"activate", &activateWidget},
    {"ambient properties", &askForAmbients},
    {"events", &Replica::adviseEvents}};

/// Without Close, and the view sink is never disconnected.
constexpr Step kQAxWidgetEnd[] = {{"deactivate", &Replica::deactivate},
                                  {"events off", &Replica::unadviseEvents},
                                  {"changes off", &Replica::unadviseObject},
                                  {"no site", &Replica::unsite},
                                  {"release", &Replica::release}};

void QAxWidget::create() {
    play(kWidgetCreation);
    pump();
}

class QAxWidgetTest : public testing::Test {
  protected:
    QAxWidget widget{{800, 500}};

    Picture spectrum() const { return windowPicture(widget.pictureBox(L"picSpectrum")); }
    void toggle() const { postRightClick(widget.panel(), 5, 5); }
    /// A complete repaint does not change what is on the screen.
    void expectNoGhost() const {
        pump();
        const Picture now = windowPicture(widget.root());
        RedrawWindow(widget.root(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        EXPECT_EQ(windowPicture(widget.root()), now);
    }
};

TEST_F(QAxWidgetTest, TheCreationStepsLeadToAnActiveControl) {
    widget.create();
    EXPECT_TRUE(isSize(widget.hint, kHint.cx, kHint.cy));
    EXPECT_TRUE(isSize(widget.window(), 800, 500));
    widget.expectLaidOutFor({800, 500});
    EXPECT_TRUE(isSize(pixelsOf(widget.extent()), 800, 500));
    DWORD status = 0;
    EXPECT_EQ(widget.as<IOleObject>()->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
    EXPECT_EQ(status & (OLEMISC_INVISIBLEATRUNTIME | OLEMISC_NOUIACTIVATE), 0U) << "it shows, and takes the focus";
    ComPtr<IOleDocument> document;
    EXPECT_EQ(widget.control.As(&document), E_NOINTERFACE) << "it would be treated as a document server";
}

TEST_F(QAxWidgetTest, EventSourcesAreFoundFirstByEnumerationAndLaterByName) {
    widget.create();
    const auto points = widget.as<IConnectionPointContainer>();
    ComPtr<IProvideClassInfo> provider = widget.as<IProvideClassInfo>();
    ComPtr<ITypeInfo> type;
    ComPtr<ITypeLib> library;
    UINT index = 0;
    ASSERT_EQ(provider->GetClassInfo(&type), S_OK);
    ASSERT_EQ(type->GetContainingTypeLib(&library, &index), S_OK);
    ComPtr<IEnumConnectionPoints> all;
    ASSERT_EQ(points->EnumConnectionPoints(&all), S_OK);
    std::vector<std::wstring> seen;
    int described = 0;
    for (ComPtr<IConnectionPoint> point; all->Next(1, point.ReleaseAndGetAddressOf(), nullptr) == S_OK;) {
        IID iid{};
        EXPECT_EQ(point->GetConnectionInterface(&iid), S_OK);
        wchar_t text[40]{};
        StringFromGUID2(iid, text, 40);
        seen.emplace_back(text);
        ComPtr<IConnectionPoint> found;
        EXPECT_EQ(points->FindConnectionPoint(iid, &found), S_OK);
        EXPECT_TRUE(sameObject(found.Get(), point.Get()));
        // The interface of property changes is the system's own and known to every container.
        if (iid == IID_IPropertyNotifySink)
            continue;
        ComPtr<ITypeInfo> source;
        EXPECT_EQ(library->GetTypeInfoOfGuid(iid, &source), S_OK);
        ++described;
    }
    EXPECT_EQ(described, 1);
    EXPECT_EQ(std::set<std::wstring>(seen.begin(), seen.end()).size(), seen.size()) << "a second time ends the search";
}

TEST_F(QAxWidgetTest, SinksThatReturnAnErrorStillReceiveTheNextEvents) {
    widget.create();
    for (const HRESULT answer : {DISP_E_MEMBERNOTFOUND, DISP_E_BADPARAMCOUNT, DISP_E_UNKNOWNINTERFACE, E_FAIL, S_OK}) {
        widget.events->answer = answer;
        widget.events->heard.clear();
        widget.chooseGridRange();
        EXPECT_FALSE(widget.events->heard.empty());
    }
}

TEST_F(QAxWidgetTest, AnExtentOfZeroQueriesTheLeastSizeAndChangesNothing) {
    widget.create();
    widget.drawChannel();
    pump();
    const Picture before = windowPicture(widget.root());
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(isSize(widget.minimumSizeHint(), 0, 0)) << "a layout may make it as small as it likes";
        EXPECT_TRUE(isSize(widget.window(), 800, 500));
        pump();
        EXPECT_EQ(windowPicture(widget.root()), before);
        // The widget draws the control at any time, with neither window bounds nor a function to continue.
        const RECTL bounds{0, 0, 800, 500};
        const HDC screen = GetDC(nullptr);
        const HDC memory = CreateCompatibleDC(screen);
        const HBITMAP bitmap = CreateCompatibleBitmap(screen, 800, 500);
        const HGDIOBJ previous = SelectObject(memory, bitmap);
        EXPECT_EQ(widget.as<IViewObject>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, memory, &bounds,
                                                 nullptr, nullptr, 0),
                  S_OK);
        const HWND units = widget.pictureBox(L"picUnits");
        POINT corner{2, 2};
        MapWindowPoints(units, widget.root(), &corner, 1);
        EXPECT_EQ(GetPixel(memory, corner.x, corner.y), before.at(corner.x, corner.y));
        SelectObject(memory, previous);
        DeleteObject(bitmap);
        DeleteDC(memory);
        ReleaseDC(nullptr, screen);
        widget.resize({820, 520});
        EXPECT_TRUE(isSize(widget.window(), 820, 520));
        widget.expectLaidOutFor({820, 520});
        widget.resize({800, 500});
        pump();
    }
}

TEST_F(QAxWidgetTest, AnExtentOfZeroBeforeTheActivationHarmsNothing) {
    Replica::initNew(widget);
    Replica::setSite(widget);
    widget.drawChannel();
    for (const SIZEL& none : {SIZEL{0, 0}, SIZEL{0, 9000}, SIZEL{9000, 0}}) {
        const SIZEL got = widget.setExtent(none);
        EXPECT_TRUE(got.cx == none.cx && got.cy == none.cy);
    }
    activateWidget(widget);
    EXPECT_TRUE(isSize(widget.window(), 800, 500));
    widget.expectLaidOutFor({800, 500});
}

TEST_F(QAxWidgetTest, EveryResizeIsTheWidgetsOwnAndEqualOnesGiveEqualWindows) {
    widget.create();
    for (const SIZE& size : {SIZE{900, 600}, SIZE{600, 400}, SIZE{600, 400}, SIZE{300, 250}, SIZE{600, 400}}) {
        widget.resize(size);
        EXPECT_TRUE(isSize(widget.window(), size.cx, size.cy));
        EXPECT_TRUE(isSize(pixelsOf(widget.extent()), size.cx, size.cy));
        pump();
        EXPECT_TRUE(isSize(widget.window(), size.cx, size.cy)) << "no wish is heard";
        EXPECT_TRUE(isSize(pixelsOf(widget.extent()), size.cx, size.cy));
        // Below the least width the layout is clipped.
        widget.expectLaidOutFor({std::max<LONG>(size.cx, 720), size.cy});
    }
    EXPECT_THAT(widget.log.count("OnPosRectChange"), testing::Le(4));
}

TEST_F(QAxWidgetTest, ACollapseLeavesNoGapInAWidgetOfFixedSize) {
    widget.create();
    widget.drawChannel();
    EXPECT_EQ(widget.control->JustDrawIt(), S_OK);
    pump();
    const Picture before = spectrum();
    for (int round = 0; round < 2; ++round) {
        toggle();
        EXPECT_EQ(windowText(widget.panel()), L"+");
        EXPECT_TRUE(isSize(widget.window(), 800, 500));
        widget.expectLaidOutFor({800, 500});
        expectNoGhost();
        const Picture tall = spectrum();
        EXPECT_EQ(tall.height, before.height + 152 - 21);
        EXPECT_EQ(widget.control->JustDrawIt(), S_OK);
        pump();
        EXPECT_EQ(spectrum(), tall) << "drawn for its new height";
        toggle();
        EXPECT_EQ(windowText(widget.panel()), L"-");
        EXPECT_TRUE(isSize(widget.window(), 800, 500));
        widget.expectLaidOutFor({800, 500});
        expectNoGhost();
        EXPECT_EQ(spectrum(), before);
    }
    const HeardEvent same{kChgHeight, {500 * 15.0}, {VT_I2}};
    EXPECT_TRUE(widget.events->heard == (std::vector<HeardEvent>{same, same, same, same}))
        << "the event tells the height that the control has";
    EXPECT_TRUE(isSize(pixelsOf(widget.extent()), 800, 500));
}

TEST_F(QAxWidgetTest, ACollapsedControlFollowsTheWidget) {
    widget.create();
    toggle();
    widget.resize({900, 420});
    widget.expectLaidOutFor({900, 420});
    toggle();
    EXPECT_TRUE(isSize(widget.window(), 900, 420));
    widget.expectLaidOutFor({900, 420});
}

TEST_F(QAxWidgetTest, ItsEndWithoutACloseLeavesNothing) {
    widget.create();
    widget.drawChannel();
    EXPECT_EQ(widget.control->put_bMouseInfo(VARIANT_TRUE), S_OK);
    widget.play(kQAxWidgetEnd);
    EXPECT_FALSE(FindWindowW(L"kvForm", nullptr));
    widget.expectAllReleased();
}

TEST_F(QAxWidgetTest, TheViewSinkIsReleasedWithTheSite) {
    widget.create();
    EXPECT_GT(widget.sink->references(), 1U);
    Replica::deactivate(widget);
    Replica::unadviseEvents(widget);
    Replica::unadviseObject(widget);
    Replica::unsite(widget);
    EXPECT_EQ(widget.sink->references(), 1U) << "while the control is still there";
    widget.log.calls.clear();
    widget.drawChannel();
    EXPECT_THAT(widget.log.take(), IsEmpty());
}

TEST_F(QAxWidgetTest, TheViewSinkIsReleasedWithTheControl) {
    Replica::adviseView(widget);
    Replica::adviseObject(widget);
    EXPECT_GT(widget.sink->references(), 1U);
    Replica::release(widget);
    EXPECT_EQ(widget.sink->references(), 1U);
}

}  // namespace
}  // namespace kv::test
