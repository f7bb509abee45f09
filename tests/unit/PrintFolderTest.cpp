// Where print files go, with and without the maker's other programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/FakeSystem.h"
#include "util/Configuration.h"
#include "util/Product.h"

namespace kv::util {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

class PrintFolderTest : public ::testing::Test {
  protected:
    /// Makes the family's folder C:\KV\.
    void install() { fake.registry.install(product::kFamilyPrograms[0], L"C:\\KV\\KVZEP32.EXE"); }

    FakeSystem fake;
    Configuration configuration{fake.system};
};

TEST_F(PrintFolderTest, IsTheWorkFolderWhenItExistsOrCanBeCreated) {
    install();
    EXPECT_EQ(configuration.getPrintFolder(), L"C:\\KV\\WORK");
    EXPECT_THAT(fake.files.created, ElementsAre(L"C:\\KV\\WORK"));
    EXPECT_EQ(configuration.getPrintFolder(), L"C:\\KV\\WORK");
    EXPECT_THAT(fake.files.created, ElementsAre(L"C:\\KV\\WORK"));
}

TEST_F(PrintFolderTest, IsTheScratchFolderWhereTheFamilyIsNotInstalled) {
    EXPECT_EQ(configuration.getPrintFolder(), configuration.getScratchFolder());
    EXPECT_NE(configuration.getPrintFolder(), L"");
    EXPECT_THAT(fake.files.created, Not(Contains(L"WORK")));
}

TEST_F(PrintFolderTest, IsTheScratchFolderWhenTheWorkFolderCannotBeCreated) {
    install();
    fake.files.folders = {L"C:\\KV\\TEMP"};
    fake.files.readOnly = true;
    EXPECT_EQ(configuration.getPrintFolder(), L"C:\\KV\\TEMP");
}

}  // namespace
}  // namespace kv::util
