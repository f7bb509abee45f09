// The control's picture for containers that draw it themselves.
#include "automation/BandscopeControl.h"

#include "formenv/Twips.h"

namespace kv::automation {

HRESULT BandscopeControl::Draw(DWORD aspect, LONG /*index*/, void* /*aspectInfo*/, DVTARGETDEVICE* /*device*/,
                               HDC /*deviceDc*/, HDC dc, LPCRECTL bounds, LPCRECTL /*windowBounds*/,
                               BOOL(STDMETHODCALLTYPE* /*goOn*/)(ULONG_PTR), ULONG_PTR /*argument*/) {
    if (aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    if (!dc || !bounds)
        return E_INVALIDARG;
    return member([&] {
        const formenv::Widget& control = scope_->children().userControl;
        const int width = formenv::twipsToPixels(control.width(), platform_.dpi());
        const int height = formenv::twipsToPixels(control.height(), platform_.dpi());
        if (!windows_)
            windows_ = std::make_unique<win32::WindowTree>(scope_->children().userControl, platform_,
                                                           win32::WindowTree::Callbacks{});
        // Painted at its own size and stretched by the mapping, so that any size shows the same picture.
        const int saved = SaveDC(dc);
        SetGraphicsMode(dc, GM_COMPATIBLE);
        POINT corners[2] = {{bounds->left, bounds->top}, {bounds->right, bounds->bottom}};
        LPtoDP(dc, corners, 2);
        SetMapMode(dc, MM_ANISOTROPIC);
        SetWindowOrgEx(dc, 0, 0, nullptr);
        SetWindowExtEx(dc, width, height, nullptr);
        SetViewportOrgEx(dc, corners[0].x, corners[0].y, nullptr);
        SetViewportExtEx(dc, corners[1].x - corners[0].x, corners[1].y - corners[0].y, nullptr);
        // The mode that a device context starts with darkens a reduced picture until thin lines are gone.
        SetStretchBltMode(dc, HALFTONE);
        SetBrushOrgEx(dc, 0, 0, nullptr);
        windows_->paint(dc, {0, 0, width, height});
        RestoreDC(dc, saved);
    });
}

HRESULT BandscopeControl::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** colors) {
    if (!colors)
        return E_POINTER;
    *colors = nullptr;
    return S_FALSE;
}

HRESULT BandscopeControl::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
    viewAspects_ = aspects;
    viewFlags_ = flags;
    viewSink_ = sink;
    if (sink && (flags & ADVF_PRIMEFIRST))
        viewChanged();
    return S_OK;
}

HRESULT BandscopeControl::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
    if (aspects)
        *aspects = viewAspects_;
    if (flags)
        *flags = viewFlags_;
    return sink ? viewSink_.CopyTo(sink) : S_OK;
}

HRESULT BandscopeControl::GetExtent(DWORD aspect, LONG /*index*/, DVTARGETDEVICE* /*device*/, LPSIZEL size) {
    return GetExtent(aspect, size);
}

void BandscopeControl::viewChanged() noexcept {
    const Microsoft::WRL::ComPtr<IAdviseSink> sink = viewSink_;
    if (!sink)
        return;
    if (viewFlags_ & ADVF_ONLYONCE)
        viewSink_.Reset();
    sink->OnViewChange(viewAspects_, -1);
}

}  // namespace kv::automation
