// Keeps an object alive for the duration of a block.
#pragma once

#include <unknwn.h>

namespace kv::win32 {

class Held {
  public:
    /// `object` may be null.
    explicit Held(IUnknown* object) noexcept : object_(object) {
        if (object_)
            object_->AddRef();
    }
    ~Held() {
        if (object_)
            object_->Release();
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

  private:
    IUnknown* object_;
};

}  // namespace kv::win32
