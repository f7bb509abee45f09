#include "com/Module.h"

#include <atomic>

namespace kv::com {

namespace {

HINSTANCE moduleInstance = nullptr;
std::atomic<long> objects{0};
std::atomic<long> locks{0};

}  // namespace

void Module::setInstance(HINSTANCE instance) noexcept {
    moduleInstance = instance;
}

HINSTANCE Module::instance() noexcept {
    return moduleInstance;
}

std::wstring Module::path() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(moduleInstance, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

void Module::addObject() noexcept {
    ++objects;
}

void Module::releaseObject() noexcept {
    --objects;
}

void Module::addLock() noexcept {
    ++locks;
}

void Module::releaseLock() noexcept {
    // The count must not become negative: after an extra unlock, the next lock would not keep the module loaded.
    for (long held = locks; held > 0;)
        if (locks.compare_exchange_weak(held, held - 1))
            return;
}

bool Module::isIdle() noexcept {
    return objects == 0 && locks == 0;
}

}  // namespace kv::com
