// The control in countries with other numbers and letters: a decimal comma, the Turkish i, a code page of two bytes.
#include <gmock/gmock.h>

#include <clocale>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"

namespace kv::test {
namespace {

struct Country {
    const char* name;  ///< of its locale in the C library, which is not installed everywhere
    LANGID language;
};

class Locales : public testing::TestWithParam<Country> {
  protected:
    Locales() : before_(GetThreadLocale()) {
        EXPECT_TRUE(SetThreadLocale(MAKELCID(GetParam().language, SORT_DEFAULT)));
        EXPECT_NE(std::setlocale(LC_ALL, GetParam().name), nullptr);
    }
    ~Locales() override {
        std::setlocale(LC_ALL, "C");
        SetThreadLocale(before_);
    }
    static std::vector<std::wstring> textsOf(const Container& container) {
        std::vector<std::wstring> texts;
        for (HWND window : container.children())
            texts.push_back(windowText(window));
        return texts;
    }

  private:
    LCID before_;
};

TEST_P(Locales, NumbersHavePointsAndKeysFoldAlike) {
    Container container;
    ASSERT_NO_FATAL_FAILURE(container.activate());
    container.addTx({.freq = 450.5, .power = 20.0, .key = L"TXI1"});
    container.addTx({.freq = 451.5, .power = 20.0, .key = L"TXÄ"});
    EXPECT_TRUE(container.draw());
    EXPECT_THAT(textsOf(container), testing::Contains(L"450.50000 to 451.50000"));
    long count = 0;
    EXPECT_EQ(container.control->RemoveChnlByKey(Text(L"TXI1").get()), S_OK);
    EXPECT_EQ(container.control->get_NumTX(&count), S_OK);
    EXPECT_EQ(count, 1);
    // The key of a channel is in use however its letters are written.
    container.addTx({.freq = 452.5, .power = 20.0, .key = L"txä"});
    ComPtr<_FreqSlot> found;
    EXPECT_EQ(container.control->GetTXbyKey(Text(L"txä").get(), found.GetAddressOf()), S_OK);
    EXPECT_FALSE(found);
    Scope byName(Way::late);
    byName.setDisplayMaxPwr(12.5);
    EXPECT_EQ(byName.DisplayMaxPwr(), 12.5);
}

INSTANTIATE_TEST_SUITE_P(In, Locales,
                         testing::Values(Country{"German", MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN)},
                                         Country{"Turkish", MAKELANGID(LANG_TURKISH, SUBLANG_DEFAULT)},
                                         Country{"Japanese", MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT)}),
                         [](const auto& country) { return std::string(country.param.name); });

}  // namespace
}  // namespace kv::test
