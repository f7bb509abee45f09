#include "tests/automation/Replica.h"

#include <gmock/gmock.h>

#include <olectl.h>

namespace kv::test {

namespace {

constexpr int kHimetricPerInch = 2540;
constexpr int kReplicaMargin = 4;  // pixels at 96 dpi

LONG himetric(LONG pixels, int dpi) {
    return (kHimetricPerInch * pixels + (dpi >> 1)) / dpi;
}

LONG pixels(LONG himetric, int dpi) {
    return (dpi * himetric + (kHimetricPerInch >> 1)) / kHimetricPerInch;
}

}  // namespace

SIZEL himetricOf(const SIZE& size, int dpi) {
    return {himetric(size.cx, dpi), himetric(size.cy, dpi)};
}

SIZE pixelsOf(const SIZEL& size, int dpi) {
    return {pixels(size.cx, dpi), pixels(size.cy, dpi)};
}

bool isSize(const SIZE& size, LONG width, LONG height) {
    return size.cx == width && size.cy == height;
}

Replica::Replica() : events(new EventSink), properties(new PropertySink) {
    const unsigned char image[] = {'k', 'v', 'B', 'S', 1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, &stream), S_OK);
    EXPECT_EQ(stream->Write(image, sizeof image, nullptr), S_OK);
}

void Replica::play(std::span<const Step> steps) {
    for (const Step& step : steps) {
        SCOPED_TRACE(step.name);
        step.run(*this);
    }
}

SIZEL Replica::extent() const {
    SIZEL size{-1, -1};
    EXPECT_EQ(as<IOleObject>()->GetExtent(DVASPECT_CONTENT, &size), S_OK);
    return size;
}

SIZEL Replica::setExtent(const SIZEL& size) const {
    SIZEL wanted = size;
    EXPECT_EQ(as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &wanted), S_OK);
    return extent();
}

bool Replica::isHidden() const {
    return root() && !isShown(root());
}

HRESULT Replica::place(const RECT& place, const RECT* clip) const {
    return as<IOleInPlaceObject>()->SetObjectRects(&place, clip);
}

HRESULT Replica::verbAt(LONG number, LONG index, HWND parent, const RECT* place) const {
    return as<IOleObject>()->DoVerb(number, nullptr, site.Get(), index, parent, place);
}

ComPtr<IConnectionPoint> Replica::point(REFIID iid) const {
    ComPtr<IConnectionPoint> found;
    EXPECT_EQ(as<IConnectionPointContainer>()->FindConnectionPoint(iid, &found), S_OK);
    return found;
}

void Replica::adviseEvents(Replica& c) {
    EXPECT_EQ(c.point(DIID___kvBandscope)->Advise(c.events.Get(), &c.eventCookie_), S_OK);
}

void Replica::unadviseEvents(Replica& c) {
    EXPECT_EQ(c.point(DIID___kvBandscope)->Unadvise(c.eventCookie_), S_OK);
}

void Replica::adviseProperties(Replica& c) {
    EXPECT_EQ(c.point(IID_IPropertyNotifySink)->Advise(c.properties.Get(), &c.propertyCookie_), S_OK);
}

void Replica::unadviseProperties(Replica& c) {
    EXPECT_EQ(c.point(IID_IPropertyNotifySink)->Unadvise(c.propertyCookie_), S_OK);
}

void Replica::adviseObject(Replica& c) {
    EXPECT_EQ(c.as<IOleObject>()->Advise(c.sink.Get(), &c.objectCookie_), S_OK);
}

void Replica::unadviseObject(Replica& c) {
    EXPECT_EQ(c.as<IOleObject>()->Unadvise(c.objectCookie_), S_OK);
}

void Replica::adviseView(Replica& c) {
    EXPECT_EQ(c.as<IViewObject>()->SetAdvise(DVASPECT_CONTENT, 0, c.sink.Get()), S_OK);
}

void Replica::setHostNames(Replica& c) {
    EXPECT_EQ(c.as<IOleObject>()->SetHostNames(L"a program", L"a form"), S_OK);
}

void Replica::initNew(Replica& c) {
    EXPECT_EQ(c.as<IPersistStreamInit>()->InitNew(), S_OK);
}

void Replica::load(Replica& c) {
    EXPECT_EQ(c.stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
    EXPECT_EQ(c.as<IPersistStreamInit>()->Load(c.stream.Get()), S_OK);
}

void Replica::setSite(Replica& c) {
    EXPECT_EQ(c.as<IOleObject>()->SetClientSite(c.site.Get()), S_OK);
}

void Replica::unsite(Replica& c) {
    EXPECT_EQ(c.as<IOleObject>()->SetClientSite(nullptr), S_OK);
}

void Replica::close(Replica& c) {
    EXPECT_EQ(c.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
}

void Replica::uiDeactivate(Replica& c) {
    EXPECT_EQ(c.as<IOleInPlaceObject>()->UIDeactivate(), S_OK);
}

void Replica::deactivate(Replica& c) {
    EXPECT_EQ(c.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_FALSE(c.root());
}

void Replica::freeze(Replica& c) {
    EXPECT_EQ(c.as<IOleControl>()->FreezeEvents(TRUE), S_OK);
}

void Replica::thaw(Replica& c) {
    EXPECT_EQ(c.as<IOleControl>()->FreezeEvents(FALSE), S_OK);
}

void Replica::release(Replica& c) {
    c.control.Reset();
}

void Replica::expectLaidOutFor(const SIZE& size) const {
    const RECT panelPlace = placeOf(panel());
    const RECT picture = placeOf(GetParent(pictureBox(L"picUnits")));
    EXPECT_EQ(panelPlace.bottom, size.cy - kReplicaMargin);
    EXPECT_EQ(panelPlace.right, size.cx - kReplicaMargin);
    EXPECT_EQ(picture.top, 0);
    EXPECT_EQ(picture.bottom, panelPlace.top - kReplicaMargin) << "a gap between picture and panel, or an overlap";
    EXPECT_EQ(picture.right, panelPlace.right);
}

void Replica::expectAllReleased() {
    site->frame->active.Reset();
    site->document->active.Reset();
    pump();
    expectNothingLeft();
    EXPECT_EQ(events->references(), 1U);
    EXPECT_EQ(properties->references(), 1U);
}

}  // namespace kv::test
