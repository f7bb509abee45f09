// A menu or one of its items, as a model.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kv::formenv {

class Menu {
  public:
    /// An item of `parent`, which must outlive it; nullptr makes a menu.
    Menu(Menu* parent, std::wstring name, std::wstring caption) : name_(std::move(name)), caption_(std::move(caption)) {
        if (parent)
            parent->items_.push_back(this);
    }
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    [[nodiscard]] const std::wstring& name() const noexcept { return name_; }
    [[nodiscard]] const std::wstring& caption() const noexcept { return caption_; }
    /// In the order of their creation.
    [[nodiscard]] const std::vector<Menu*>& items() const noexcept { return items_; }

  private:
    std::wstring name_;
    std::wstring caption_;
    std::vector<Menu*> items_;
};

}  // namespace kv::formenv
