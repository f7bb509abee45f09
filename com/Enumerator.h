// COM enumerators (IEnum...) over a list that is fixed when the enumeration starts.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "com/Counted.h"
#include "com/Module.h"

namespace kv::com {

/// `Interface`: the enumerator's interface. `Policy` defines the types Stored, an item that owns its references, and
/// Item, which the caller gets, and `static void copy(const Stored&, Item*) noexcept`, which adds the caller's
/// references.
template <class Interface, class Policy>
class Enumerator final : public Counted<Interface> {
    using Stored = typename Policy::Stored;
    using Item = typename Policy::Item;
    using List = std::shared_ptr<const std::vector<Stored>>;

  public:
    /// Stores a new enumerator in `*out`. Throws std::bad_alloc.
    static void create(std::vector<Stored> items, Interface** out) {
        *out = new Enumerator(std::make_shared<const std::vector<Stored>>(std::move(items)), 0);
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Item* items, ULONG* fetched) override {
        if (fetched)
            *fetched = 0;
        if (!items || (!fetched && count != 1))
            return E_POINTER;
        ULONG done = 0;
        for (; done < count && next_ < list_->size(); ++done, ++next_)
            Policy::copy((*list_)[next_], &items[done]);
        if (fetched)
            *fetched = done;
        return done == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = list_->size() - next_;
        next_ += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Interface** out) override {
        if (!out)
            return E_POINTER;
        *out = new (std::nothrow) Enumerator(list_, next_);
        return *out ? S_OK : E_OUTOFMEMORY;
    }

  private:
    Enumerator(List list, std::size_t next) noexcept : list_(std::move(list)), next_(next) {}
    ~Enumerator() override = default;

    List list_;
    std::size_t next_;
    [[no_unique_address]] ModuleRef module_;
};

}  // namespace kv::com
