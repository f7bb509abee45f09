// The sample host's loading of a plan into a control whose members fail.
#include <gmock/gmock.h>

#include <array>
#include <functional>

#include "host/Loading.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

using host::Failure;
using host::Loading;
using host::Plan;
using host::ProductOptions;
using host::RangeMhz;

/// Functions of the interface: those of IDispatch and 71 members.
constexpr std::size_t kFunctions = 78;
using FunctionTable = std::array<void*, kFunctions>;

/// The place in the function table of the member with this number in the IDL.
constexpr std::size_t tablePlaceOf(std::size_t number) {
    return 6 + number;
}

/// Lets one call of a member fail. A control with this function table works as before otherwise.
class FailingTable {
  public:
    FailingTable() : original_(*table()), failing_(original_) { *tablePointer() = failing_.data(); }
    FailingTable(const FailingTable&) = delete;
    FailingTable& operator=(const FailingTable&) = delete;
    ~FailingTable() {
        *tablePointer() = originalTable_;
        current = nullptr;
    }

    Scope scope;

    template <std::size_t number, class... Arguments>
    void failOnce(int call) {
        current = this;
        callsLeft_ = call;
        failing_ = original_;
        failing_[tablePlaceOf(number)] = reinterpret_cast<void*>(&FailingTable::replaced<number, Arguments...>);
    }
    [[nodiscard]] bool hasFailed() const noexcept { return callsLeft_ <= 0; }

  private:
    template <std::size_t number, class... Arguments>
    static HRESULT STDMETHODCALLTYPE replaced(_kvBandscope* control, Arguments... arguments) {
        using Member = HRESULT(STDMETHODCALLTYPE*)(_kvBandscope*, Arguments...);
        if (--current->callsLeft_ == 0)
            return E_OUTOFMEMORY;
        return reinterpret_cast<Member>(current->original_[tablePlaceOf(number)])(control, arguments...);
    }
    [[nodiscard]] void** tablePointerValue() const { return *reinterpret_cast<void***>(scope.get()); }
    [[nodiscard]] FunctionTable* table() { return reinterpret_cast<FunctionTable*>(originalTable_); }
    [[nodiscard]] void*** tablePointer() { return reinterpret_cast<void***>(scope.get()); }

    static inline FailingTable* current = nullptr;
    void** originalTable_ = tablePointerValue();
    FunctionTable original_;
    FunctionTable failing_;
    int callsLeft_ = 1;
};

/// Creates channel records until the given number has been created.
class LimitedFactory final : public IClassFactory {
  public:
    explicit LimitedFactory(int records) : left_(records) {
        EXPECT_EQ(getClassObject(CLSID_FreqSlot, IID_PPV_ARGS(factory_.GetAddressOf())), S_OK);
    }
    virtual ~LimitedFactory() = default;
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (left_-- <= 0)
            return E_OUTOFMEMORY;
        return factory_->CreateInstance(outer, iid, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

  private:
    int left_;
    ComPtr<IClassFactory> factory_;
};

Plan earlierPlan() {
    return host::parsePlan(
        "kind,key,frequency,bandwidth,power\n"
        "TX,TX1,462.55,16,47\nTX,TX2,462.6,16,45\nTX,TX3,462.7,16,43\nRX,RX1,462.45,16,30\n",
        L"earlier.csv");
}

Plan nextPlan() {
    return host::parsePlan(
        "kind,key,frequency,bandwidth,power\n"
        "TX,TX9,160,20,20\nTX,TX1,161,20,10\nRX,RX9,159,20,-5\n",
        L"next.csv");
}

void load(_kvBandscope& control, IClassFactory& records, const Plan& plan, const std::optional<RangeMhz>& range = {}) {
    Loading loading(control, records, plan, ProductOptions(), range);
    loading.start();
    while (!loading.step()) {
    }
    loading.show();
}

/// What a user sees of a control and what a host can read of it.
struct LoadedState {
    std::vector<std::wstring> channels;
    std::vector<double> view;
    Picture picture;
};

LoadedState loadedState(Scope& scope) {
    LoadedState state;
    for (long i = 0; i < scope.NumTX(); ++i)
        state.channels.push_back(keyOf(scope.GetTXChnl(i).Get()));
    for (long i = 0; i < scope.NumRX(); ++i)
        state.channels.push_back(keyOf(scope.GetRXChnl(i).Get()));
    double value = 0.0;
    SHORT divisions = 0;
    const auto add = [&](HRESULT hr) {
        EXPECT_EQ(hr, S_OK);
        state.view.push_back(value);
    };
    add(scope->get_DisplayMinFreq(&value));
    add(scope->get_DisplayMaxFreq(&value));
    add(scope->get_DisplayMinPwr(&value));
    add(scope->get_DisplayMaxPwr(&value));
    add(scope->get_dTXFreqMin(&value));
    add(scope->get_dFreqMax(&value));
    add(scope->get_FreqEndBuffer(&value));
    add(scope->get_CursorVal(&value));
    EXPECT_EQ(scope->get_nGridX(&divisions), S_OK);
    state.view.push_back(divisions);
    state.picture = capture(scope);
    return state;
}

void expectSame(const LoadedState& now, const LoadedState& before) {
    EXPECT_EQ(now.channels, before.channels);
    EXPECT_EQ(now.view, before.view);
    EXPECT_TRUE(now.picture == before.picture);
}

class HostLoading : public testing::Test {
  protected:
    using Prepare = std::function<void(int call)>;

    /// Lets the first call of a member fail, then the second and so on, until a loading succeeds.
    void expectEachFailureLeaves(const LoadedState& before, const Prepare& prepare, int leastFailures) {
        LimitedFactory records(100000);
        int call = 1;
        for (;; ++call) {
            SCOPED_TRACE(call);
            prepare(call);
            try {
                load(*table.scope.get(), records, nextPlan());
                break;
            } catch (const Failure& failure) {
                EXPECT_THAT(failure.text, testing::HasSubstr(L"0x8007000E"));
            }
            EXPECT_TRUE(table.hasFailed());
            expectSame(loadedState(table.scope), before);
        }
        EXPECT_FALSE(table.hasFailed());
        EXPECT_GT(call, leastFailures);
        EXPECT_EQ(table.scope.NumRX(), 1);
        EXPECT_EQ(keyOf(table.scope.GetRXChnl(0).Get()), L"RX9");
    }
    LoadedState loadEarlier(const std::optional<RangeMhz>& range = {}) {
        LimitedFactory records(1000);
        load(*table.scope.get(), records, earlierPlan(), range);
        return loadedState(table.scope);
    }

    FailingTable table;
};

struct FailingMember {
    const char* name;
    void (*fail)(FailingTable& table, int call);
    int leastFailures;
};

void PrintTo(const FailingMember& member, std::ostream* stream) {
    *stream << member.name;
}

// The numbers are those of the members in the IDL.
const FailingMember kFailingMembers[] = {
    {"AddTXChnl", [](FailingTable& t, int call) { t.failOnce<1, _FreqSlot*, LONG*>(call); }, 4},
    {"AddRXChnl", [](FailingTable& t, int call) { t.failOnce<2, _FreqSlot*, LONG*>(call); }, 1},
    {"GetTXChnl", [](FailingTable& t, int call) { t.failOnce<3, LONG, _FreqSlot**>(call); }, 12},
    {"dTXFreqMin", [](FailingTable& t, int call) { t.failOnce<5, double*>(call); }, 2},
    {"ClearAllChnls", [](FailingTable& t, int call) { t.failOnce<23>(call); }, 1},
    {"nGridX", [](FailingTable& t, int call) { t.failOnce<26, SHORT>(call); }, 2},
    {"DisplayMinFreq", [](FailingTable& t, int call) { t.failOnce<30, double*>(call); }, 1},
    {"DisplayMinPwr", [](FailingTable& t, int call) { t.failOnce<32, double>(call); }, 2},
    {"DisplayMaxPwr", [](FailingTable& t, int call) { t.failOnce<34, double>(call); }, 2},
    {"FreqEndBuffer", [](FailingTable& t, int call) { t.failOnce<38, double>(call); }, 2},
    {"CursorVal", [](FailingTable& t, int call) { t.failOnce<48, double>(call); }, 2},
    {"DrawByRange", [](FailingTable& t, int call) { t.failOnce<66, double, double>(call); }, 2},
};

class HostLoadingMember : public HostLoading, public testing::WithParamInterface<FailingMember> {};

TEST_P(HostLoadingMember, FailureLeavesTheEarlierPlanAndItsPicture) {
    const LoadedState before = loadEarlier();
    ASSERT_EQ(before.channels.size(), 13U);  // 3 transmitters, 9 products, 1 receiver
    expectEachFailureLeaves(
        before, [&](int call) { GetParam().fail(table, call); }, GetParam().leastFailures);
}

INSTANTIATE_TEST_SUITE_P(All, HostLoadingMember, testing::ValuesIn(kFailingMembers),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_F(HostLoading, FailureLeavesTheRangeOfTheCommandLine) {
    const LoadedState before = loadEarlier(RangeMhz{462.3, 462.95});
    expectEachFailureLeaves(
        before, [&](int call) { table.failOnce<1, _FreqSlot*, LONG*>(call); }, 4);
}

TEST_F(HostLoading, FailureLeavesTheRangeThatTheUserHasChosen) {
    loadEarlier();
    table.scope.DrawByRange(462.5125, 462.6875);
    ASSERT_EQ(table.scope->put_CursorVal(462.6), S_OK);
    const LoadedState before = loadedState(table.scope);
    expectEachFailureLeaves(
        before, [&](int call) { table.failOnce<1, _FreqSlot*, LONG*>(call); }, 4);
}

TEST_F(HostLoading, FailureLeavesARangeThatBeginsBelow0) {
    loadEarlier();
    table.scope.DrawByRange(400.0, 1400.0);
    ASSERT_EQ(table.scope->put_DisplayCenterFreq(480.0), S_OK);
    ASSERT_EQ(table.scope->DrawNewCenterFreq(), S_OK);
    const LoadedState before = loadedState(table.scope);
    ASSERT_EQ(before.view.at(0), -20.0);
    expectEachFailureLeaves(
        before, [&](int call) { table.failOnce<1, _FreqSlot*, LONG*>(call); }, 4);
}

TEST_F(HostLoading, FailureWithoutAnEarlierPlanLeavesNothing) {
    const Picture before = capture(table.scope);
    LimitedFactory records(1000);
    table.failOnce<1, _FreqSlot*, LONG*>(4);
    EXPECT_THROW(load(*table.scope.get(), records, nextPlan()), Failure);
    EXPECT_EQ(table.scope.NumTX(), 0);
    EXPECT_EQ(table.scope.NumRX(), 0);
    EXPECT_TRUE(capture(table.scope) == before);
}

TEST_F(HostLoading, RecordsThatCannotBeCreatedLeaveTheEarlierPlan) {
    const LoadedState before = loadEarlier();
    for (int records = 0; records < 5; ++records) {
        SCOPED_TRACE(records);
        LimitedFactory limited(records);
        EXPECT_THROW(load(*table.scope.get(), limited, nextPlan()), Failure);
        expectSame(loadedState(table.scope), before);
    }
}

TEST_F(HostLoading, TooManyProductsLeaveTheEarlierPlan) {
    const LoadedState before = loadEarlier();
    std::string text = "kind,key,frequency,bandwidth\n";
    for (int i = 0; i < 200; ++i)
        text += "TX,TX" + std::to_string(i) + "," + std::to_string(100 + i) + ",10\n";
    LimitedFactory records(100000);
    EXPECT_THROW(load(*table.scope.get(), records, host::parsePlan(text, L"large.csv")), Failure);
    expectSame(loadedState(table.scope), before);
}

TEST_F(HostLoading, StoppingThatFailsLeavesTheEarlierPlan) {
    const LoadedState before = loadEarlier();
    LimitedFactory records(100000);
    const Plan plan = nextPlan();
    Loading loading(*table.scope.get(), records, plan, ProductOptions(), std::nullopt);
    loading.start();
    table.failOnce<2, _FreqSlot*, LONG*>(1);
    EXPECT_THROW(loading.cancel(), Failure);
    expectSame(loadedState(table.scope), before);
}

}  // namespace
}  // namespace kv::test
