// Streams, storages and property bags for the saved state of the control.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/automation/Container.h"

namespace kv::test {

using Bytes = std::vector<unsigned char>;

/// What the control saves.
inline const Bytes kImage = {'k', 'v', 'B', 'S', 1, 0, 0, 0, 0, 0, 0, 0};

/// A stream that contains `bytes`, at its start.
inline ComPtr<IStream> streamOf(const Bytes& bytes) {
    ComPtr<IStream> stream;
    EXPECT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, &stream), S_OK);
    ULONG written = 0;
    EXPECT_EQ(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written), S_OK);
    EXPECT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
    return stream;
}

inline ULONGLONG position(IStream* stream) {
    ULARGE_INTEGER at{};
    EXPECT_EQ(stream->Seek({}, STREAM_SEEK_CUR, &at), S_OK);
    return at.QuadPart;
}

/// All bytes of a stream.
inline Bytes contentOf(IStream* stream) {
    STATSTG stat{};
    EXPECT_EQ(stream->Stat(&stat, STATFLAG_NONAME), S_OK);
    Bytes bytes(static_cast<std::size_t>(stat.cbSize.QuadPart));
    EXPECT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
    ULONG got = 0;
    EXPECT_EQ(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &got), S_OK);
    EXPECT_EQ(got, bytes.size());
    return bytes;
}

class Bag final : public Counted<IPropertyBag, IErrorLog> {
  public:
    std::map<std::wstring, Var> values;
    std::vector<std::wstring> errors;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
        const auto found = values.find(name);
        return found == values.end() ? E_INVALIDARG : VariantCopy(value, &found->second);
    }
    HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* value) override {
        return VariantCopy(&values[name], value);
    }
    HRESULT STDMETHODCALLTYPE AddError(LPCOLESTR name, EXCEPINFO* info) override {
        EXPECT_TRUE(info->bstrDescription);
        errors.emplace_back(name);
        return S_OK;
    }
};

}  // namespace kv::test
