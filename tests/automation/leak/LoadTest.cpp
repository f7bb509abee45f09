// Many controls, many calls and two threads: the system's objects and the memory stay as they are.
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/leak/Usage.h"

namespace kv::test {
namespace {

constexpr SIZE_T kMegabyte = 1024 * 1024;

void expectAsBefore(const Usage& before, SIZE_T slack) {
    const Usage after = usage();
    EXPECT_LE(after.gdi, before.gdi + 2);
    EXPECT_LE(after.user, before.user + 2);
    testing::Test::RecordProperty("bytesBefore", std::to_string(before.bytes));
    testing::Test::RecordProperty("bytesAfter", std::to_string(after.bytes));
    EXPECT_LT(after.bytes, before.bytes + slack) << before.bytes << " to " << after.bytes;
}

void addSome(const Container& container, int count) {
    for (int i = 0; i < count; ++i)
        container.addTx({.freq = 440.0 + i, .power = 20.0, .key = L"TX" + std::to_wstring(i)});
}

/// Controls in one window.
class Crowd {
  public:
    explicit Crowd(int count) {
        for (int i = 0; i < count; ++i) {
            Member member{ComPtr<ContainerSite>(new ContainerSite(log_, host_.get(), kOffersAll)),
                          createInstance<_kvBandscope>(CLSID_kvBandscope)};
            EXPECT_TRUE(member.control);
            ComPtr<IOleObject> object;
            EXPECT_EQ(member.control.As(&object), S_OK);
            EXPECT_EQ(object->SetClientSite(member.site.Get()), S_OK);
            EXPECT_EQ(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, member.site.Get(), 0, host_.get(),
                                     &member.site->place),
                      S_OK);
            members_.push_back(std::move(member));
        }
        pump();
    }
    ~Crowd() {
        for (const Member& member : members_) {
            ComPtr<IOleObject> object;
            EXPECT_EQ(member.control.As(&object), S_OK);
            EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
            EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
        }
        members_.clear();
        pump();
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    void draw() const {
        for (const Member& member : members_) {
            VARIANT_BOOL drawn = VARIANT_FALSE;
            EXPECT_EQ(member.control->DrawDisplay(&drawn), S_OK);
        }
    }

  private:
    struct Member {
        ComPtr<ContainerSite> site;
        ComPtr<_kvBandscope> control;
    };
    CallLog log_;
    HostWindow host_;
    std::vector<Member> members_;
};

TEST(Load, TwoHundredControlsInOneWindowLeaveNothing) {
    // As many as are counted, because the heap keeps the memory that was needed at once.
    {
        const Crowd warmUp(200);
        warmUp.draw();
    }
    const Usage before = usage();
    {
        const Crowd crowd(200);
        crowd.draw();
        const Usage during = usage();
        EXPECT_GT(during.user, before.user + 200);
    }
    expectAsBefore(before, 2 * kMegabyte);
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST(Load, TenThousandDrawingsLeaveNothing) {
    Container container;
    ASSERT_NO_FATAL_FAILURE(container.activate());
    // Without showing the window the drawings themselves are what is measured.
    ShowWindow(container.host.get(), SW_HIDE);
    addSome(container, 20);
    const auto draw = [&](int count) {
        for (int i = 0; i < count; ++i) {
            VARIANT_BOOL drawn = VARIANT_FALSE;
            ASSERT_EQ(container.control->DrawDisplay(&drawn), S_OK);
        }
    };
    draw(100);
    const Usage before = usage();
    draw(10'000);
    expectAsBefore(before, kMegabyte);
}

TEST(Load, AThousandReportsAndCopiesLeaveNothing) {
    Container container;
    ASSERT_NO_FATAL_FAILURE(container.activate());
    ShowWindow(container.host.get(), SW_HIDE);
    addSome(container, 3);
    EXPECT_TRUE(container.draw());
    const auto use = [&](int count) {
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(container.control->put_bMouseInfo(VARIANT_TRUE), S_OK);
            EXPECT_EQ(container.control->put_bMouseInfo(VARIANT_FALSE), S_OK);
            EXPECT_EQ(container.control->CopyDisplayToClipboard(), S_OK);
        }
    };
    use(20);
    const Usage before = usage();
    use(1000);
    expectAsBefore(before, 2 * kMegabyte);
}

/// Interface pointers on their way to the other thread.
class Exchange {
  public:
    /// The streams own what they hold; one that was not taken is released with its marshaled pointer.
    void offer(std::size_t from, ComPtr<IStream> stream) {
        const std::lock_guard lock(mutex_);
        drop(std::exchange(offered_[from], std::move(stream)));
    }
    [[nodiscard]] ComPtr<IStream> take(std::size_t from) {
        const std::lock_guard lock(mutex_);
        return std::exchange(offered_[from], nullptr);
    }
    static void drop(const ComPtr<IStream>& stream) {
        if (!stream)
            return;
        stream->Seek({}, STREAM_SEEK_SET, nullptr);
        CoReleaseMarshalData(stream.Get());
    }

  private:
    std::mutex mutex_;
    ComPtr<IStream> offered_[2];
};

struct Counts {
    std::atomic<int> lives{0};
    std::atomic<int> calls{0};
};

/// A thread that makes controls, draws in them, lets them fire, calls those of the other thread and releases its own at
/// any time.
void liveBesideTheOther(std::size_t self, Exchange& exchange, Counts& counts, std::atomic<int>& ended,
                        std::chrono::steady_clock::time_point end) {
    if (FAILED(OleInitialize(nullptr))) {
        ++ended;
        return;
    }
    {
        const MessageBoxes boxes;
        std::mt19937 random(static_cast<unsigned>(self) + 1);
        while (std::chrono::steady_clock::now() < end) {
            auto container = std::make_unique<Container>();
            container->activate();
            const ComPtr<EventSink> sink(new EventSink);
            container->connect(sink.Get());
            addSome(*container, 5);
            container->draw();
            ComPtr<IStream> offered;
            if (SUCCEEDED(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, container->control.Get(),
                                                                offered.GetAddressOf())))
                exchange.offer(self, std::move(offered));
            ComPtr<IDispatch> others;
            for (unsigned i = random() % 12; i > 0; --i) {
                if (const ComPtr<IStream> taken = exchange.take(1 - self)) {
                    others.Reset();
                    CoUnmarshalInterface(taken.Get(), IID_PPV_ARGS(others.GetAddressOf()));
                }
                // The other control may be gone by now, which is an error of the call and nothing else.
                if (others && SUCCEEDED(call(others.Get(), i % 2 == 0 ? L"DrawDisplay" : L"ClearAllChnls").hr))
                    ++counts.calls;
                container->chooseGridRange(static_cast<int>(i % 3));
                container->draw();
                pump();
            }
            if (random() % 2 == 0)
                Exchange::drop(exchange.take(self));
            container.reset();
            ++counts.lives;
        }
        Exchange::drop(exchange.take(self));
        // A call that the other thread has sent is answered only while this one handles messages.
        for (++ended; ended < 2; Sleep(1))
            pump();
    }
    OleUninitialize();
}

TEST(Load, ControlsOfTwoThreadsCallEachOther) {
    const char* const wanted = std::getenv("KV_LOAD_SECONDS");
    const auto seconds = std::chrono::seconds(wanted ? std::atoi(wanted) : 15);
    const auto end = std::chrono::steady_clock::now() + seconds;
    Exchange exchange;
    Counts counts[2];
    std::atomic<int> ended{0};
    std::thread threads[2];
    for (std::size_t i = 0; i < 2; ++i)
        threads[i] = std::thread([&, i] { liveBesideTheOther(i, exchange, counts[i], ended, end); });
    for (std::thread& thread : threads)
        thread.join();
    for (const Counts& of : counts) {
        EXPECT_GT(of.lives, 2);
        EXPECT_GT(of.calls, 2);
    }
    std::printf("%d and %d lives, %d and %d calls\n", counts[0].lives.load(), counts[1].lives.load(),
                counts[0].calls.load(), counts[1].calls.load());
    EXPECT_EQ(canUnloadNow(), S_OK);
}

}  // namespace
}  // namespace kv::test
