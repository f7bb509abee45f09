// Every letter whose case the names of settings and keys may differ in: what the shorter samples of other tests leave
// out, and that nothing else changes.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "util/Text.h"

namespace kv::util {
namespace {

// Letter by letter from the Unicode character database.
constexpr std::wstring_view kCapitals =
    L"ϚϜϢϤϦϨϪϬϮѤѦѨѪѬѮѰѲѶѸѺѼѾҌҎҒҔҘҚҜҞҠҤҦҨҪҬҲҴҶҸҺҼҾӅӇӉӋӒӔӖӚӜӞӠӢӤӦӪӬӰӲӴӶӸӺӼӾԂԄԆԈԊԌԎԐԒԔԖԘԚԜԞԠԢԤԦ"
    L"Ԩ"
    L"Ԫ"
    L"Ԭ";
constexpr std::wstring_view kSmall =
    L"ϛϝϣϥϧϩϫϭϯѥѧѩѫѭѯѱѳѷѹѻѽѿҍҏғҕҙқҝҟҡҥҧҩҫҭҳҵҷҹһҽҿӆӈӊӌӓӕӗӛӝӟӡӣӥӧӫӭӱӳӵӷӹӻӽӿԃԅԇԉԋԍԏԑԓԕԗԙԛԝԟԡԣԥԧ"
    L"ԩ"
    L"ԫ"
    L"ԭ";

TEST(AlphabetTest, LettersOfSeldomUseHaveTheirCase) {
    ASSERT_EQ(kCapitals.size(), 89U);
    ASSERT_EQ(kSmall.size(), kCapitals.size());
    for (std::size_t i = 0; i < kSmall.size(); ++i) {
        EXPECT_EQ(foldCase(kCapitals[i]), kSmall[i]) << i;
        EXPECT_EQ(upperCase(kSmall[i]), kCapitals[i]) << i;
    }
}

TEST(AlphabetTest, NothingButLettersChanges) {
    int folded = 0;
    int raised = 0;
    for (int code = 0; code <= 0xFFFF; ++code) {
        const auto letter = static_cast<wchar_t>(code);
        folded += foldCase(letter) != letter ? 1 : 0;
        raised += upperCase(letter) != letter ? 1 : 0;
    }
    // 322 letters in two cases; eleven more forms fold together with an ordinary letter, and eleven have its capital:
    // the dotless i is only among these, the capital theta symbol only among those.
    EXPECT_EQ(folded, 322 + 11);
    EXPECT_EQ(raised, 322 + 11);
}

}  // namespace
}  // namespace kv::util
