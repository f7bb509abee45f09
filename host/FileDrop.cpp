#include "host/FileDrop.h"

#include <ole2.h>
#include <shellapi.h>

namespace kv::host {

namespace {

FORMATETC filesFormat() {
    return {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

std::vector<std::wstring> filesOf(IDataObject* data) {
    constexpr UINT kCount = 0xFFFFFFFF;
    FORMATETC format = filesFormat();
    STGMEDIUM medium{};
    check(data->GetData(&format, &medium), L"Reading the dropped files");
    const auto drop = static_cast<HDROP>(medium.hGlobal);
    std::vector<std::wstring> files(DragQueryFileW(drop, kCount, nullptr, 0));
    for (UINT i = 0; i < files.size(); ++i) {
        std::wstring& file = files[i];
        file.resize(DragQueryFileW(drop, i, nullptr, 0));
        DragQueryFileW(drop, i, file.data(), static_cast<UINT>(file.size() + 1));
    }
    ReleaseStgMedium(&medium);
    return files;
}

}  // namespace

STDMETHODIMP DropTarget::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    if (iid != IID_IUnknown && iid != IID_IDropTarget) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDropTarget*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) DropTarget::AddRef() {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
}

STDMETHODIMP_(ULONG) DropTarget::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) {
        delete this;
    }
    return static_cast<ULONG>(left);
}

STDMETHODIMP DropTarget::DragEnter(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) {
    FORMATETC format = filesFormat();
    accepts_ = data != nullptr && data->QueryGetData(&format) == S_OK;
    return DragOver(keys, point, effect);
}

STDMETHODIMP DropTarget::DragOver(DWORD, POINTL, DWORD* effect) {
    if (effect == nullptr) {
        return E_POINTER;
    }
    // A copy, because the file stays where it is.
    *effect = accepts_ ? *effect & DROPEFFECT_COPY : DROPEFFECT_NONE;
    return S_OK;
}

STDMETHODIMP DropTarget::DragLeave() {
    accepts_ = false;
    return S_OK;
}

STDMETHODIMP DropTarget::Drop(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) try {
    const HRESULT result = DragEnter(data, keys, point, effect);
    if (SUCCEEDED(result) && accepts_) {
        files_ = filesOf(data);
        PostMessageW(window_, message_, 0, 0);
    }
    accepts_ = false;
    return result;
} catch (...) {
    return E_FAIL;  // no exception may leave this call from the system
}

FileDrop::FileDrop(HWND window, UINT message) : window_(window), target_(new DropTarget(window, message)) {
    check(RegisterDragDrop(window, target_.Get()), L"Accepting dropped files");
}

FileDrop::~FileDrop() {
    RevokeDragDrop(window_);
}

}  // namespace kv::host
