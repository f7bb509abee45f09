// A counted reference to an object that counts for itself through retain() and release().
#pragma once

#include <cstddef>
#include <utility>

namespace kv::util {

template <class T>
class Ref {
  public:
    Ref() noexcept = default;
    Ref(std::nullptr_t) noexcept {}
    /// Shares `object`: its count goes up by one.
    explicit Ref(T* object) noexcept : object_(object) {
        if (object_)
            object_->retain();
    }
    Ref(const Ref& other) noexcept : Ref(other.object_) {}
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~Ref() {
        if (object_)
            object_->release();
    }
    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    /// Takes over a count that the caller already holds.
    [[nodiscard]] static Ref adopt(T* object) noexcept {
        Ref result;
        result.object_ = object;
        return result;
    }

    [[nodiscard]] T* get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.object_ == b.object_; }

  private:
    T* object_ = nullptr;
};

}  // namespace kv::util
