// The saved state of the control in streams, storages and property bags, valid and damaged ones.
#include <gmock/gmock.h>

#include <vector>

#include "tests/automation/PersistFixture.h"

namespace kv::test {
namespace {

ComPtr<IStorage> newStorage() {
    ComPtr<IStorage> storage;
    EXPECT_EQ(StgCreateDocfile(nullptr, STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_DELETEONRELEASE, 0,
                               &storage),
              S_OK);
    return storage;
}

template <class Interface>
ComPtr<Interface> fresh() {
    return createInstance<Interface>(CLSID_kvBandscope);
}

Bytes changed(std::size_t place, unsigned char value) {
    Bytes bytes = kImage;
    bytes[place] = value;
    return bytes;
}

TEST(Persist, TheImageIsAHeaderAndNothingElse) {
    const auto persist = fresh<IPersistStreamInit>();
    EXPECT_EQ(persist->InitNew(), S_OK);
    EXPECT_EQ(persist->IsDirty(), S_FALSE);
    const auto stream = streamOf({});
    EXPECT_EQ(persist->Save(stream.Get(), TRUE), S_OK);
    ASSERT_EQ(position(stream.Get()), kImage.size());
    EXPECT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
    Bytes written(kImage.size());
    ULONG got = 0;
    EXPECT_EQ(stream->Read(written.data(), static_cast<ULONG>(written.size()), &got), S_OK);
    EXPECT_EQ(written, kImage);
    ULARGE_INTEGER most{};
    EXPECT_EQ(persist->GetSizeMax(&most), S_OK);
    EXPECT_EQ(most.QuadPart, kImage.size());
    CLSID clsid{};
    EXPECT_EQ(persist->GetClassID(&clsid), S_OK);
    EXPECT_TRUE(clsid == CLSID_kvBandscope);
    // Nothing that a host does with the control makes it dirty.
    ComPtr<_kvBandscope> control;
    ASSERT_EQ(persist.As(&control), S_OK);
    EXPECT_EQ(control->put_FreqEndBuffer(7.0), S_OK);
    EXPECT_EQ(persist->IsDirty(), S_FALSE);
}

TEST(Persist, GoodImagesAreReadToTheirEnd) {
    Bytes two = kImage;
    two.insert(two.end(), {'n', 'e', 'x', 't'});
    auto stream = streamOf(two);
    EXPECT_EQ(fresh<IPersistStreamInit>()->Load(stream.Get()), S_OK);
    EXPECT_EQ(position(stream.Get()), kImage.size()) << "what follows is another control's";
    // Saved before there was an image.
    EXPECT_EQ(fresh<IPersistStreamInit>()->Load(streamOf({}).Get()), S_OK);
    // By a later version, with settings that mean nothing here.
    Bytes later = changed(4, 2);
    later[8] = 0x58;
    later[9] = 0x02;
    later.resize(later.size() + 600, 0xAB);
    later.push_back('n');
    stream = streamOf(later);
    EXPECT_EQ(fresh<IPersistStreamInit>()->Load(stream.Get()), S_OK);
    EXPECT_EQ(position(stream.Get()), later.size() - 1);
}

TEST(Persist, OtherImagesAreRefused) {
    std::vector<Bytes> bad;
    for (std::size_t length = 1; length < kImage.size(); ++length)
        bad.emplace_back(kImage.begin(), kImage.begin() + static_cast<std::ptrdiff_t>(length));
    for (std::size_t place = 0; place < 4; ++place)
        bad.push_back(changed(place, '?'));
    bad.push_back(changed(4, 0));
    bad.push_back(changed(6, 1));
    bad.push_back(changed(8, 1));
    Bytes cutOff = changed(4, 2);
    cutOff[8] = 10;
    cutOff.resize(cutOff.size() + 9);
    bad.push_back(cutOff);
    // The mark counts whatever the version is.
    Bytes foreign = changed(4, 2);
    foreign[0] = '?';
    bad.push_back(foreign);
    Bytes huge = changed(4, 9);
    huge[11] = 0xFF;
    bad.push_back(huge);
    bad.push_back(Bytes(4096, 0xFF));
    bad.push_back(Bytes(4096, 0));
    for (const Bytes& bytes : bad) {
        const auto persist = fresh<IPersistStreamInit>();
        EXPECT_EQ(persist->Load(streamOf(bytes).Get()), STG_E_INVALIDHEADER) << testing::PrintToString(bytes);
        // The host can continue with a new control.
        EXPECT_EQ(persist->InitNew(), S_OK);
    }
    EXPECT_EQ(canUnloadNow(), S_OK);
}

/// A stream that gives a byte at a time, fails, or is full.
class OddStream final : public Counted<IStream> {
  public:
    Bytes bytes;
    std::size_t next = 0;
    HRESULT readAnswer = S_OK;
    HRESULT writeAnswer = S_OK;
    ULONG room = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE Read(void* to, ULONG count, ULONG* got) override {
        *got = count > 0 && next < bytes.size() && SUCCEEDED(readAnswer) ? 1 : 0;
        if (*got)
            *static_cast<unsigned char*>(to) = bytes[next++];
        return readAnswer;
    }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG count, ULONG* written) override {
        *written = count < room ? count : room;
        return writeAnswer;
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return E_NOTIMPL; }
};

TEST(Persist, IrregularStreamsAreHandled) {
    const ComPtr<OddStream> odd(new OddStream);
    odd->bytes = kImage;
    EXPECT_EQ(fresh<IPersistStreamInit>()->Load(odd.Get()), S_OK) << "a byte at a time";
    odd->readAnswer = STG_E_READFAULT;
    EXPECT_EQ(fresh<IPersistStreamInit>()->Load(odd.Get()), STG_E_READFAULT);
    const auto persist = fresh<IPersistStreamInit>();
    odd->room = 5;
    EXPECT_EQ(persist->Save(odd.Get(), TRUE), STG_E_MEDIUMFULL);
    odd->writeAnswer = STG_E_ACCESSDENIED;
    EXPECT_EQ(persist->Save(odd.Get(), TRUE), STG_E_ACCESSDENIED);
    EXPECT_EQ(persist->Save(static_cast<IStream*>(nullptr), TRUE), E_POINTER);
    EXPECT_EQ(persist->Load(nullptr), E_POINTER);
    EXPECT_EQ(odd->references(), 1U);
}

TEST(Persist, AControlCanBeInitializedOrLoadedMoreThanOnce) {
    const auto stream = fresh<IPersistStreamInit>();
    EXPECT_EQ(stream->InitNew(), S_OK);
    EXPECT_EQ(stream->InitNew(), S_OK);
    EXPECT_EQ(stream->Load(streamOf(kImage).Get()), E_UNEXPECTED);
    const ComPtr<Bag> bag(new Bag);
    ComPtr<IPersistPropertyBag> fromBag;
    ASSERT_EQ(stream.As(&fromBag), S_OK);
    EXPECT_EQ(fromBag->InitNew(), S_OK);
    EXPECT_EQ(fromBag->Load(bag.Get(), nullptr), E_UNEXPECTED);
    ComPtr<IPersistStorage> storage;
    ASSERT_EQ(stream.As(&storage), S_OK);
    EXPECT_EQ(storage->InitNew(newStorage().Get()), CO_E_ALREADYINITIALIZED);
    EXPECT_EQ(storage->Load(newStorage().Get()), CO_E_ALREADYINITIALIZED);
    const auto loaded = fresh<IPersistStreamInit>();
    EXPECT_EQ(loaded->Load(streamOf(kImage).Get()), S_OK);
    EXPECT_EQ(loaded->InitNew(), E_UNEXPECTED);
    EXPECT_EQ(loaded->Load(streamOf(kImage).Get()), S_OK);
    EXPECT_EQ(loaded->Load(streamOf({'?'}).Get()), STG_E_INVALIDHEADER) << "and is what it was";
    EXPECT_EQ(loaded->Load(streamOf(kImage).Get()), S_OK);
    EXPECT_EQ(loaded->IsDirty(), S_FALSE);
    ASSERT_EQ(loaded.As(&fromBag), S_OK);
    EXPECT_EQ(fromBag->Load(bag.Get(), nullptr), S_OK);
}

TEST(Persist, StorageCallsInTheWrongOrderAreRefused) {
    const auto storage = newStorage();
    const auto other = newStorage();
    const auto persist = fresh<IPersistStorage>();
    EXPECT_EQ(persist->HandsOffStorage(), E_UNEXPECTED);
    EXPECT_EQ(persist->SaveCompleted(nullptr), E_UNEXPECTED);
    EXPECT_EQ(persist->InitNew(nullptr), E_POINTER);
    EXPECT_EQ(persist->InitNew(storage.Get()), S_OK);
    EXPECT_EQ(persist->SaveCompleted(nullptr), E_UNEXPECTED);
    EXPECT_EQ(persist->Save(storage.Get(), TRUE), S_OK);
    EXPECT_EQ(persist->Save(storage.Get(), TRUE), E_UNEXPECTED) << "not before the end of the first save";
    EXPECT_EQ(persist->SaveCompleted(nullptr), S_OK);
    EXPECT_EQ(persist->Save(other.Get(), FALSE), S_OK);
    EXPECT_EQ(persist->HandsOffStorage(), S_OK);
    EXPECT_EQ(persist->Save(other.Get(), FALSE), E_UNEXPECTED);
    EXPECT_EQ(persist->SaveCompleted(nullptr), E_INVALIDARG);
    EXPECT_EQ(persist->SaveCompleted(other.Get()), S_OK);
    // The control holds no storage open.
    ComPtr<IStream> stream;
    EXPECT_EQ(storage->OpenStream(L"kvBandscope", nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream), S_OK);
    stream.Reset();
    const auto again = fresh<IPersistStorage>();
    EXPECT_EQ(again->Load(other.Get()), S_OK);
    EXPECT_EQ(again->IsDirty(), S_FALSE);
    EXPECT_EQ(fresh<IPersistStorage>()->Load(newStorage().Get()), S_OK) << "saved before there was an image";
}

TEST(Persist, AStorageWithAnotherStreamIsRefused) {
    const auto storage = newStorage();
    ComPtr<IStream> stream;
    ASSERT_EQ(storage->CreateStream(L"kvBandscope", STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, &stream),
              S_OK);
    EXPECT_EQ(stream->Write("something else", 14, nullptr), S_OK);
    stream.Reset();
    const auto persist = fresh<IPersistStorage>();
    EXPECT_EQ(persist->Load(storage.Get()), STG_E_INVALIDHEADER);
    EXPECT_EQ(persist->InitNew(storage.Get()), S_OK);
}

TEST(Persist, APropertyBagHoldsAVersion) {
    const ComPtr<Bag> bag(new Bag);
    EXPECT_EQ(fresh<IPersistPropertyBag>()->Load(bag.Get(), bag.Get()), S_OK) << "empty";
    EXPECT_EQ(fresh<IPersistPropertyBag>()->Save(bag.Get(), TRUE, TRUE), S_OK);
    ASSERT_EQ(bag->values.size(), 1U);
    EXPECT_EQ(bag->values[L"_Version"].lVal, 1);
    EXPECT_EQ(fresh<IPersistPropertyBag>()->Load(bag.Get(), nullptr), S_OK);
    bag->values[L"_Version"] = Var(L"77");
    bag->values[L"Somebody"] = Var(L"else");
    EXPECT_EQ(fresh<IPersistPropertyBag>()->Load(bag.Get(), bag.Get()), S_OK) << "a later one, as text";
    EXPECT_TRUE(bag->errors.empty());
    bag->values[L"_Version"] = Var(L"rubbish");
    const auto persist = fresh<IPersistPropertyBag>();
    EXPECT_EQ(persist->Load(bag.Get(), bag.Get()), STG_E_INVALIDHEADER);
    EXPECT_THAT(bag->errors, testing::ElementsAre(L"_Version"));
    EXPECT_EQ(persist->Load(bag.Get(), nullptr), STG_E_INVALIDHEADER);
    EXPECT_EQ(persist->InitNew(), S_OK);
    EXPECT_EQ(persist->Load(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(bag->references(), 1U);
}

}  // namespace
}  // namespace kv::test
