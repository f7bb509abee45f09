// Hosts that share the compiler's run-time library with other modules of their process.
#include <gtest/gtest.h>

#include "tests/automation/ChildProcess.h"
#include "tests/automation/Module.h"

namespace kv::test {
namespace {

TEST(SharedRuntime, ErrorsInsideTheModuleAreTrapped) {
    const std::wstring module = modulePath();
    const std::wstring folder = module.substr(0, module.find_last_of(L'\\') + 1);
    const ChildProcess host(L"\"" + folder + L"sharedruntime\\SharedRuntimeHost.exe\" \"" + module + L"\"");
    EXPECT_EQ(host.wait(), 42U);
}

}  // namespace
}  // namespace kv::test
