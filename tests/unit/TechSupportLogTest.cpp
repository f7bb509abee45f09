#include "util/TechSupportLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/FakeSystem.h"
#include "util/LogLine.h"

namespace kv::util {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr wchar_t kLog[] = L"C:\\KV\\KVTECSUP.TXT";

class TechSupportLogTest : public ::testing::Test {
  protected:
    FakeSystem fake;
    Configuration configuration{fake.system};
    TechSupportLog log{configuration, fake.system};
};

TEST_F(TechSupportLogTest, LinesAreAppendedWithTheHostsNameAndVersionWhereAsked) {
    fake.install();
    log.wrtTechSupNoMak(L"One", false);
    log.wrtTechSupNoMak(L"", false);
    log.wrtTechSupNoMak(L"Two", true);
    EXPECT_EQ(fake.files.texts.at(kLog),
              L"2026-03-09 17:04:05:  One\r\n \r\n2026-03-09 17:04:05:  \r\n \r\n"
              L"2026-03-09 17:04:05:  Two  (Host.exe 1.0.2)\r\n \r\n");
}

TEST_F(TechSupportLogTest, ThePathIsKept) {
    fake.install();
    EXPECT_EQ(log.getTechSupPath(), kLog);
    fake.registry.keys.clear();
    EXPECT_EQ(log.getTechSupPath(), kLog);
}

TEST_F(TechSupportLogTest, WithoutAMakersFolderTheLogIsInTheCurrentFolderAndStaysThere) {
    log.wrtTechSupNoMak(L"One", false);
    fake.install();
    log.wrtTechSupNoMak(L"Two", false);
    EXPECT_EQ(log.getTechSupPath(), L"KVTECSUP.TXT");
    EXPECT_THAT(fake.lines(L"KVTECSUP.TXT"), SizeIs(4));
    EXPECT_FALSE(fake.files.texts.contains(kLog));
}

TEST_F(TechSupportLogTest, AFailureToWriteIsIgnored) {
    fake.install();
    fake.files.unwritable = true;
    log.wrtTechSupNoMak(L"Lost", true);
    EXPECT_THAT(fake.files.texts, IsEmpty());
    fake.files.unwritable = false;
    log.wrtTechSupNoMak(L"Kept", false);
    EXPECT_EQ(fake.files.texts.at(kLog), L"2026-03-09 17:04:05:  Kept\r\n \r\n");
}

TEST_F(TechSupportLogTest, AnyOtherExceptionIsIgnoredToo) {
    fake.install();
    fake.system.now = []() -> DateTime { throw std::bad_alloc(); };
    log.wrtTechSupNoMak(L"Lost", true);
    EXPECT_THAT(fake.files.texts, IsEmpty());
}

TEST(LogTimeTest, EveryPartHasItsFullWidth) {
    EXPECT_EQ(logTime({2026, 1, 2, 3, 4, 5}), L"2026-01-02 03:04:05");
    EXPECT_EQ(logTime({1999, 12, 31, 23, 59, 59}), L"1999-12-31 23:59:59");
    EXPECT_EQ(logTime({2026, 6, 30, 0, 0, 0}), L"2026-06-30 00:00:00");
    EXPECT_EQ(logTime({33, 10, 11, 12, 13, 14}), L"0033-10-11 12:13:14");
    EXPECT_EQ(logTime({12345, 1, 2, 3, 4, 5}), L"12345-01-02 03:04:05");
    EXPECT_EQ(logLine({2026, 6, 30, 12, 0, 0}, L"x"), L"2026-06-30 12:00:00:  x\r\n");
}

}  // namespace
}  // namespace kv::util
