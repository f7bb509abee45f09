#include "automation/ControlPersist.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "automation/Identity.h"
#include "com/OleTypes.h"
#include "kvBandscope.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

constexpr std::uint16_t kVersion = 1;
constexpr wchar_t kStreamName[] = L"kvBandscope";
constexpr wchar_t kVersionProperty[] = L"_Version";
/// More than any later version would need; a larger number means damaged data.
constexpr std::uint32_t kMostBytes = 1U << 20U;

using Header = std::array<BYTE, 12>;

constexpr Header kHeader = {'k', 'v', 'B', 'S', kVersion & 0xFFU, kVersion >> 8U, 0, 0, 0, 0, 0, 0};

std::uint32_t numberAt(const Header& header, std::size_t place, std::size_t bytes) {
    std::uint32_t number = 0;
    for (std::size_t i = bytes; i-- > 0;)
        number = number << 8U | header[place + i];
    return number;
}

/// Reads up to `size` bytes. A stream may return fewer bytes than requested although it has more.
HRESULT readUpTo(IStream& stream, BYTE* bytes, ULONG size, ULONG& got) {
    got = 0;
    while (got < size) {
        ULONG count = 0;
        const HRESULT result = stream.Read(bytes + got, size - got, &count);
        if (FAILED(result))
            return result;
        if (count == 0)
            return S_OK;
        got += std::min(count, size - got);
    }
    return S_OK;
}

/// The stream is then positioned behind the image.
HRESULT readImage(IStream& stream) {
    Header header{};
    ULONG got = 0;
    HRESULT result = readUpTo(stream, header.data(), static_cast<ULONG>(header.size()), got);
    if (FAILED(result) || got == 0)
        return FAILED(result) ? result : S_OK;
    if (got < header.size() || !std::equal(header.begin(), header.begin() + 4, kHeader.begin()))
        return STG_E_INVALIDHEADER;
    const std::uint32_t version = numberAt(header, 4, 2);
    std::uint32_t left = numberAt(header, 8, 4);
    if (version == 0 || left > kMostBytes || (version == kVersion && header != kHeader))
        return STG_E_INVALIDHEADER;
    std::array<BYTE, 512> skipped{};
    for (; left > 0; left -= got) {
        const ULONG wanted = std::min(left, static_cast<std::uint32_t>(skipped.size()));
        result = readUpTo(stream, skipped.data(), wanted, got);
        if (FAILED(result))
            return result;
        if (got < wanted)
            return STG_E_INVALIDHEADER;
    }
    return S_OK;
}

HRESULT writeImage(IStream& stream) {
    ULONG written = 0;
    const HRESULT result = stream.Write(kHeader.data(), static_cast<ULONG>(kHeader.size()), &written);
    if (FAILED(result))
        return result;
    return written == kHeader.size() ? S_OK : STG_E_MEDIUMFULL;
}

void tellLog(IErrorLog* errors, HRESULT code) {
    if (!errors)
        return;
    EXCEPINFO info{};
    info.scode = code;
    info.bstrSource = SysAllocString(kControlProgId);
    info.bstrDescription = SysAllocString(L"The version of the saved control is not a number.");
    errors->AddError(kVersionProperty, &info);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
}

}  // namespace

HRESULT PersistImpl::GetClassID(CLSID* clsid) {
    if (!clsid)
        return E_POINTER;
    *clsid = CLSID_kvBandscope;
    return S_OK;
}

HRESULT PersistImpl::begin(Origin origin) noexcept {
    if (origin_ != Origin::None && origin_ != origin)
        return E_UNEXPECTED;
    origin_ = origin;
    return S_OK;
}

HRESULT PersistImpl::InitNew() {
    return begin(Origin::New);
}

HRESULT PersistImpl::Load(IStream* stream) {
    if (!stream)
        return E_POINTER;
    if (origin_ == Origin::New)
        return E_UNEXPECTED;
    const HRESULT result = readImage(*stream);
    return FAILED(result) ? result : begin(Origin::Loaded);
}

HRESULT PersistImpl::Save(IStream* stream, BOOL /*clearDirty*/) {
    return stream ? writeImage(*stream) : E_POINTER;
}

HRESULT PersistImpl::GetSizeMax(ULARGE_INTEGER* size) {
    if (!size)
        return E_POINTER;
    size->QuadPart = kHeader.size();
    return S_OK;
}

HRESULT PersistImpl::InitNew(IStorage* storage) {
    if (!storage)
        return E_POINTER;
    if (origin_ != Origin::None)
        return CO_E_ALREADYINITIALIZED;
    origin_ = Origin::New;
    turn_ = Turn::Scribble;
    return S_OK;
}

HRESULT PersistImpl::Load(IStorage* storage) {
    if (!storage)
        return E_POINTER;
    if (origin_ != Origin::None)
        return CO_E_ALREADYINITIALIZED;
    ComPtr<IStream> stream;
    HRESULT result = storage->OpenStream(kStreamName, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream);
    if (SUCCEEDED(result))
        result = readImage(*stream.Get());
    else if (result == STG_E_FILENOTFOUND)
        result = S_OK;
    if (FAILED(result))
        return result;
    origin_ = Origin::Loaded;
    turn_ = Turn::Scribble;
    return S_OK;
}

HRESULT PersistImpl::Save(IStorage* storage, BOOL /*sameAsLoad*/) {
    if (!storage)
        return E_POINTER;
    if (turn_ == Turn::NoScribble || turn_ == Turn::HandsOff)
        return E_UNEXPECTED;
    ComPtr<IStream> stream;
    HRESULT result = storage->CreateStream(kStreamName, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, &stream);
    if (SUCCEEDED(result))
        result = writeImage(*stream.Get());
    if (SUCCEEDED(result))
        turn_ = Turn::NoScribble;
    return result;
}

HRESULT PersistImpl::SaveCompleted(IStorage* storage) {
    if (turn_ != Turn::NoScribble && turn_ != Turn::HandsOff)
        return E_UNEXPECTED;
    if (turn_ == Turn::HandsOff && !storage)
        return E_INVALIDARG;
    turn_ = Turn::Scribble;
    saved();
    return S_OK;
}

HRESULT PersistImpl::HandsOffStorage() {
    if (turn_ == Turn::None)
        return E_UNEXPECTED;
    turn_ = Turn::HandsOff;
    return S_OK;
}

HRESULT PersistImpl::Load(IPropertyBag* bag, IErrorLog* errors) {
    if (!bag)
        return E_POINTER;
    if (origin_ == Origin::New)
        return E_UNEXPECTED;
    com::Variant version;
    // A bag without the property was written by an earlier version or by hand.
    if (SUCCEEDED(bag->Read(kVersionProperty, &version, nullptr)) && version.vt != VT_EMPTY &&
        FAILED(VariantChangeType(&version, &version, 0, VT_I4))) {
        tellLog(errors, STG_E_INVALIDHEADER);
        return STG_E_INVALIDHEADER;
    }
    return begin(Origin::Loaded);
}

HRESULT PersistImpl::Save(IPropertyBag* bag, BOOL /*clearDirty*/, BOOL /*saveAll*/) {
    if (!bag)
        return E_POINTER;
    com::Variant version(static_cast<int>(kVersion));
    return bag->Write(kVersionProperty, &version);
}

}  // namespace kv::automation
