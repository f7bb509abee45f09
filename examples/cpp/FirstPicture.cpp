// The first picture from C++: no window, no container and no registration.
//
//   FirstPicture [MANIFEST] [PICTURE]
//
// MANIFEST is the path of kvBandscope.manifest, which must be in the same folder as kvBandscope.ocx. Without MANIFEST
// the control must be registered. Without PICTURE the picture is saved in the scratch folder. The program prints the
// name of the picture, or what went wrong. The exit code is 0 when the picture was saved.
#include <windows.h>

#include <ole2.h>

#include <initguid.h>  // the identifiers that kvBandscope.h declares are defined here

#include "kvBandscope.h"

#include <wrl/client.h>

#include <cstdio>

using Microsoft::WRL::ComPtr;

namespace {

/// While this object exists, COM finds the classes that the manifest names, for the calling thread.
class Activation {
  public:
    explicit Activation(const wchar_t* manifest) {
        ACTCTXW wanted{};
        wanted.cbSize = sizeof wanted;
        wanted.lpSource = manifest;
        context_ = CreateActCtxW(&wanted);
        active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
    }
    ~Activation() {
        if (active_)
            DeactivateActCtx(0, cookie_);
        if (context_ != INVALID_HANDLE_VALUE)
            ReleaseActCtx(context_);
    }
    Activation(const Activation&) = delete;
    Activation& operator=(const Activation&) = delete;

  private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

// [first picture]
bool savePicture(const wchar_t* file) {
    ComPtr<_kvBandscope> scope;
    ComPtr<_FreqSlot> channel;
    HRESULT hr = CoCreateInstance(CLSID_kvBandscope, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(scope.GetAddressOf()));
    if (SUCCEEDED(hr))
        hr = CoCreateInstance(CLSID_FreqSlot, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(channel.GetAddressOf()));
    if (FAILED(hr)) {
        fwprintf(stderr, L"The control cannot be created (error %08lX). Register it, or name its manifest.\n",
                 static_cast<unsigned long>(hr));
        return false;
    }
    BSTR key = SysAllocString(L"TX1");
    channel->put_sKey(key);
    channel->put_dFreq(462.55);     // MHz
    channel->put_dFreqLo(462.542);  // the edges of the box; without them the box is twice dBW wide
    channel->put_dFreqHi(462.558);
    channel->put_dBW(16.0);       // kHz
    channel->put_dPwrDBM(46.99);  // dBm
    channel->put_lColor(RGB(31, 119, 180));
    long index = 0;
    scope->AddTXChnl(channel.Get(), &index);  // 0, then 1, 2, ...
    scope->put_FreqEndBuffer(0.0);            // MHz; no margin, so that exactly the range below is shown
    scope->put_nGridX(10);                    // 10 divisions of 20 kHz
    scope->put_DisplayMaxPwr(60.0);           // dBm
    scope->DrawByRange(462.5, 462.7);         // MHz
    VARIANT_BOOL drawn = VARIANT_FALSE;
    scope->DrawDisplay(&drawn);  // draw again, without the cursor line that DrawByRange draws

    double height = 0.0;  // receives the height of the picture, in twips
    double width = 0.0;
    BSTR name = SysAllocString(file);
    BSTR written = nullptr;
    scope->DisplayToBMP(&height, &width, &name, &written);
    const bool saved = SysStringLen(written) > 0;
    if (saved)
        wprintf(L"Picture saved as %ls\n", written);
    else
        fwprintf(stderr, L"The picture cannot be saved as %ls. The log KVTECSUP.TXT says why.\n", name);
    SysFreeString(written);
    SysFreeString(name);
    SysFreeString(key);
    return saved;
}
// [end]

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (FAILED(OleInitialize(nullptr)))
        return 1;
    bool saved = false;
    {
        const Activation activation(argc > 1 ? argv[1] : L"");
        saved = savePicture(argc > 2 ? argv[2] : L"");
    }
    OleUninitialize();
    return saved ? 0 : 1;
}
