// Saved states with random damage in streams, storages and property bags. Each is loaded completely or refused, and the
// control works on either way. The seeds are fixed, so every run has the same damage.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <random>

#include "tests/automation/PersistFixture.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr std::uint32_t kMostPayload = 1U << 20U;
constexpr std::size_t kLengthPlace = 8;

/// Random numbers below a limit.
class Dice {
  public:
    explicit Dice(std::uint32_t seed) : random_(seed) {}
    std::size_t below(std::size_t limit) { return random_() % limit; }
    unsigned char byte() { return static_cast<unsigned char>(random_()); }
    template <class Range>
    const auto& of(const Range& choices) {
        return choices[below(std::size(choices))];
    }

  private:
    std::mt19937 random_;
};

void setLength(Bytes& image, std::uint32_t length) {
    for (std::size_t i = 0; i < 4; ++i)
        image[kLengthPlace + i] = static_cast<unsigned char>(length >> (8 * i));
}

/// The image of a version with so many bytes of settings.
Bytes imageOf(unsigned char version, std::uint32_t payload) {
    Bytes image = kImage;
    image[4] = version;
    setLength(image, payload);
    image.resize(image.size() + payload, 0x5A);
    return image;
}

Bytes validImage(Dice& dice) {
    switch (dice.below(5)) {
        case 0:
            return imageOf(2, static_cast<std::uint32_t>(dice.below(40)));
        case 1:
            return imageOf(dice.byte() | 2, 600);
        case 2: {
            Bytes two = kImage;
            two.insert(two.end(), kImage.begin(), kImage.end());
            return two;
        }
        default:
            return kImage;
    }
}

/// A length in the header that is near the real one or near a limit.
void spliceLength(Bytes& image, Dice& dice) {
    if (image.size() < kImage.size())
        return;
    const auto real = static_cast<std::uint32_t>(image.size() - kImage.size());
    setLength(image, dice.of(std::array<std::uint32_t, 10>{real, real + 1, real - 1, 0, 1, kMostPayload,
                                                           kMostPayload + 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF}));
}

void damage(Bytes& image, Dice& dice) {
    const std::size_t place = dice.below(image.size() + 1);
    const auto at = image.begin() + static_cast<std::ptrdiff_t>(place);
    switch (dice.below(6)) {
        case 0:
            if (place < image.size())
                image[place] ^= static_cast<unsigned char>(1U << dice.below(8));
            break;
        case 1:
            image.erase(at, image.end());
            break;
        case 2:
            image.insert(at, 1 + dice.below(20), dice.byte());
            break;
        case 3:
            spliceLength(image, dice);
            break;
        case 4: {
            // The start of this image and the end of another one.
            const Bytes other = validImage(dice);
            image.erase(at, image.end());
            image.insert(image.end(), other.begin() + static_cast<std::ptrdiff_t>(dice.below(other.size())),
                         other.end());
            break;
        }
        default:
            if (place < image.size())
                image.erase(at);
            break;
    }
}

Bytes damagedImage(Dice& dice) {
    // As many settings as are allowed, or one byte more.
    if (dice.below(40) == 0)
        return imageOf(3, kMostPayload + static_cast<std::uint32_t>(dice.below(2)));
    Bytes image = validImage(dice);
    for (std::size_t changes = dice.below(4); changes > 0; --changes)
        damage(image, dice);
    return image;
}

/// The length of the image at the start of `bytes`, as the format is defined; nothing when it has to be refused.
std::optional<std::size_t> imageLength(const Bytes& bytes) {
    if (bytes.empty())
        return 0;
    if (bytes.size() < kImage.size() || !std::equal(bytes.begin(), bytes.begin() + 4, kImage.begin()))
        return std::nullopt;
    const unsigned version = bytes[4] + 256U * bytes[5];
    if (version == 1)
        return std::equal(kImage.begin(), kImage.end(), bytes.begin()) ? std::optional(kImage.size()) : std::nullopt;
    std::uint64_t length = 0;
    for (std::size_t i = 4; i-- > 0;)
        length = length * 256 + bytes[kLengthPlace + i];
    if (version == 0 || length > kMostPayload || length > bytes.size() - kImage.size())
        return std::nullopt;
    return kImage.size() + static_cast<std::size_t>(length);
}

/// A control with channels and settings of the running host, which no load may change.
class BusyControl {
  public:
    BusyControl() {
        scope_.AddTXChnl(channel({.freq = 462.55, .bw = 12.5, .power = 40.0, .key = L"TX1", .color = 0x0000FF}));
        scope_.AddRXChnl(channel({.freq = 467.55, .bw = 12.5, .power = -60.0, .key = L"RX1", .color = 0x00FF00}));
        scope_.setFreqEndBuffer(7.0);
        scope_.setNGridX(12);
        scope_.setGridColor(0x123456);
    }

    template <class Interface>
    [[nodiscard]] ComPtr<Interface> as() const {
        ComPtr<Interface> other;
        EXPECT_EQ(scope_.get()->QueryInterface(IID_PPV_ARGS(other.GetAddressOf())), S_OK);
        return other;
    }
    void expectUnchanged() {
        EXPECT_EQ(scope_.NumTX(), 1);
        EXPECT_EQ(scope_.NumRX(), 1);
        EXPECT_EQ(keyOf(scope_.GetTXChnl(0).Get()), L"TX1");
        EXPECT_EQ(scope_.FreqEndBuffer(), 7.0);
        EXPECT_EQ(scope_.nGridX(), 12);
        EXPECT_EQ(scope_.GridColor(), 0x123456U);
        EXPECT_EQ(as<IPersistStreamInit>()->IsDirty(), S_FALSE);
    }
    [[nodiscard]] Picture picture() {
        EXPECT_TRUE(scope_.DrawDisplay());
        return capture(scope_);
    }

  private:
    Scope scope_;
};

/// Loads damaged data into one control after the other: a control that has refused is used again, because it must be
/// the same as before. A loaded or initialized one is replaced. At the end, both results have occurred.
class PersistDamageTest : public testing::Test {
  protected:
    static constexpr int kRounds = 600;
    static constexpr int kRoundsForAPicture = 40;
    static constexpr int kRoundsForInitNew = 7;

    BusyControl& control() {
        if (!control_)
            control_.emplace();
        return *control_;
    }
    void judge(int round, bool loaded) {
        control().expectUnchanged();
        ++(loaded ? loaded_ : refused_);
        if (round % kRoundsForAPicture == 0) {
            EXPECT_TRUE(control().picture() == unloaded_) << "the picture is the same";
        }
        const bool initialized = !loaded && round % kRoundsForInitNew == 0;
        if (initialized) {
            EXPECT_EQ(control().as<IPersistStreamInit>()->InitNew(), S_OK) << "it is not loaded";
        }
        if (loaded || initialized)
            control_.reset();
    }
    void TearDown() override {
        control_.reset();
        EXPECT_EQ(canUnloadNow(), S_OK) << "all references are released";
        EXPECT_GT(loaded_, kRounds / 20);
        EXPECT_GT(refused_, kRounds / 20);
    }

  private:
    Picture unloaded_ = BusyControl().picture();
    std::optional<BusyControl> control_;
    int loaded_ = 0;
    int refused_ = 0;
};

TEST_F(PersistDamageTest, StreamsAreLoadedCompletelyOrRefused) {
    Dice dice(20260417);
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        const Bytes bytes = damagedImage(dice);
        SCOPED_TRACE(testing::Message() << "round " << round << ": " << testing::PrintToString(bytes));
        const std::optional<std::size_t> length = imageLength(bytes);
        const auto persist = control().as<IPersistStreamInit>();
        const auto stream = streamOf(bytes);
        ASSERT_EQ(persist->Load(stream.Get()), length ? S_OK : STG_E_INVALIDHEADER);
        if (length) {
            EXPECT_EQ(position(stream.Get()), *length);
            EXPECT_EQ(persist->InitNew(), E_UNEXPECTED) << "it is loaded";
            const auto saved = streamOf({});
            EXPECT_EQ(persist->Save(saved.Get(), TRUE), S_OK);
            EXPECT_EQ(contentOf(saved.Get()), kImage);
        }
        judge(round, length.has_value());
    }
}

/// A storage in memory.
ComPtr<IStorage> memoryStorage() {
    ComPtr<ILockBytes> bytes;
    EXPECT_EQ(CreateILockBytesOnHGlobal(nullptr, TRUE, &bytes), S_OK);
    ComPtr<IStorage> storage;
    EXPECT_EQ(
        StgCreateDocfileOnILockBytes(bytes.Get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &storage),
        S_OK);
    return storage;
}

ComPtr<IStorage> storageOf(const Bytes& bytes) {
    const auto storage = memoryStorage();
    ComPtr<IStream> stream;
    EXPECT_EQ(storage->CreateStream(L"kvBandscope", STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, &stream),
              S_OK);
    EXPECT_EQ(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr), S_OK);
    return storage;
}

Bytes storedIn(IStorage* storage) {
    ComPtr<IStream> stream;
    EXPECT_EQ(storage->OpenStream(L"kvBandscope", nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream), S_OK);
    return stream ? contentOf(stream.Get()) : Bytes();
}

TEST_F(PersistDamageTest, StoragesAreLoadedCompletelyOrRefused) {
    Dice dice(20260418);
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        const Bytes bytes = damagedImage(dice);
        SCOPED_TRACE(testing::Message() << "round " << round << ": " << testing::PrintToString(bytes));
        const bool good = imageLength(bytes).has_value();
        const auto persist = control().as<IPersistStorage>();
        const auto storage = storageOf(bytes);
        ASSERT_EQ(persist->Load(storage.Get()), good ? S_OK : STG_E_INVALIDHEADER);
        EXPECT_EQ(storedIn(storage.Get()), bytes) << "the stream is released and not changed";
        if (good) {
            EXPECT_EQ(persist->Load(storage.Get()), CO_E_ALREADYINITIALIZED);
            EXPECT_EQ(persist->Save(storage.Get(), TRUE), S_OK);
            EXPECT_EQ(persist->SaveCompleted(nullptr), S_OK);
            EXPECT_EQ(storedIn(storage.Get()), kImage);
        } else {
            EXPECT_EQ(persist->SaveCompleted(nullptr), E_UNEXPECTED) << "it has no storage";
        }
        judge(round, good);
    }
}

/// A value of the property, and whether it is a number that a version can be.
struct Version {
    Var value;
    bool good;
};

Version damagedText(Dice& dice) {
    std::wstring text = std::to_wstring(dice.below(100000));
    for (std::size_t changes = dice.below(3); changes > 0; --changes) {
        const std::size_t place = dice.below(text.size());
        text[place] ^= static_cast<wchar_t>(1U << (4 + dice.below(12)));
    }
    // Other changes can leave a number, for example a blank before the digits. These cannot.
    const bool digits = std::ranges::all_of(text, [](wchar_t c) { return c >= L'0' && c <= L'9'; });
    if (!digits)
        text += L"?";
    return {Var(text.c_str()), digits};
}

Version damagedVersion(Dice& dice) {
    static unsigned char byte = 7;
    switch (dice.below(10)) {
        case 0:
            return {Var(static_cast<int>(dice.byte()) - 128), true};
        case 1:
            return {Var(static_cast<double>(dice.below(1000000)) / 7.0), true};
        case 2:
            return {Var(dice.of(std::array{1e300, -1e10, std::numeric_limits<double>::infinity()})), false};
        case 3:
            return {Var(dice.below(2) == 0), true};
        case 4:
            return {Var::null(), false};
        case 5:
            return {Var::missing(), false};
        case 6:
            return {Var(), true};  // an empty value is the same as none
        case 7:
            return {Var::typed(VT_UI1 | VT_BYREF, &byte), true};
        case 8: {
            Var array = Var::typed(VT_ARRAY | VT_UI1, nullptr);
            array.parray = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(dice.below(20)));
            return {array, false};
        }
        default:
            return damagedText(dice);
    }
}

TEST_F(PersistDamageTest, PropertyBagsAreLoadedCompletelyOrRefused) {
    Dice dice(20260419);
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        const Version version = damagedVersion(dice);
        SCOPED_TRACE(testing::Message() << "round " << round << ", type " << version.value.vt << ": "
                                        << testing::PrintToString(version.value.text()));
        const ComPtr<Bag> bag(new Bag);
        bag->values[L"_Version"] = version.value;
        bag->values[L"Other"] = Var(static_cast<int>(dice.byte()));
        const auto persist = control().as<IPersistPropertyBag>();
        ASSERT_EQ(persist->Load(bag.Get(), bag.Get()), version.good ? S_OK : STG_E_INVALIDHEADER);
        EXPECT_EQ(bag->errors.size(), version.good ? 0U : 1U);
        if (version.good) {
            EXPECT_EQ(persist->InitNew(), E_UNEXPECTED) << "it is loaded";
            EXPECT_EQ(persist->Save(bag.Get(), TRUE, TRUE), S_OK);
            EXPECT_EQ(bag->values[L"_Version"].vt, VT_I4);
            EXPECT_EQ(bag->values[L"_Version"].lVal, 1);
        }
        EXPECT_EQ(bag->references(), 1U);
        judge(round, version.good);
    }
}

}  // namespace
}  // namespace kv::test
