#include "host/selfcheck/Sample.h"

#include "host/Loading.h"

namespace kv::host {

namespace {

constexpr char kSamplePlan[] =
    "kind,key,label,frequency,bandwidth,power\n"
    "TX,TX1,Output 1,462.55,20,47\n"
    "TX,TX2,Output 2,462.6,20,47\n"
    "TX,TX3,Output 3,462.7,20,44\n"
    "RX,RX1,Input 1,462.5,20,20\n"
    "RX,RX2,Input 2,462.75,20,20\n";

}  // namespace

void setColors(_kvBandscope& control) {
    check(control.put_GridColor(RGB(0xD5, 0xDA, 0xE1)), L"Setting GridColor");
    check(control.put_lCursorColor(RGB(0xB0, 0x30, 0x30)), L"Setting lCursorColor");
    check(control.put_lColorSpecBack(RGB(0xFF, 0xFF, 0xFF)), L"Setting lColorSpecBack");
    check(control.put_lColorLblBack(RGB(0xF4, 0xF6, 0xF8)), L"Setting lColorLblBack");
    check(control.put_lColorLblFore(RGB(0x33, 0x3D, 0x4A)), L"Setting lColorLblFore");
}

ComPtr<_kvBandscope> newControl(const Context& context) {
    ComPtr<_kvBandscope> control;
    check(context.classes->control->CreateInstance(nullptr, IID__kvBandscope,
                                                   reinterpret_cast<void**>(control.GetAddressOf())),
          L"Creating the control");
    setColors(*control.Get());
    return control;
}

void show(_kvBandscope& control, IClassFactory& freqSlot, const Plan& plan) {
    Loading loading(control, freqSlot, plan, ProductOptions{}, std::nullopt);
    loading.start();
    while (!loading.step()) {
    }
    loading.show();
}

Plan samplePlan() {
    return parsePlan(kSamplePlan, L"sample");
}

ComPtr<_BandscopeView> viewOf(_kvBandscope& control) {
    ComPtr<_BandscopeView> view;
    check(control.QueryInterface(IID__BandscopeView, reinterpret_cast<void**>(view.GetAddressOf())),
          L"Getting the interface _BandscopeView of the control");
    return view;
}

std::wstring savePicture(const Context& context, _kvBandscope& control, const std::wstring& name,
                         const PictureSize& size) {
    const std::wstring file = context.workFolder + name;
    check(viewOf(control)->SavePicture(Bstr(file).get(), size.width, size.height, size.dpi), L"SavePicture");
    return file;
}

Pixels savedPicture(const Context& context, _kvBandscope& control, const PictureSize& size) {
    return readPicture(savePicture(context, control, L"picture.png", size));
}

}  // namespace kv::host
