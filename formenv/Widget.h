// The child controls of a form as models: they hold place, text and state whether or not they have windows,
// so that a control without a container scales, draws and reports like any other.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "raster/Canvas.h"
#include "raster/Color.h"

namespace kv::formenv {

class Widget;

/// The kind of window that a widget has.
enum class WidgetKind { UserControl, Form, Frame, PictureBox, Label, Button, CheckBox, ComboBox, TextBox, Custom };

enum class Change {
    Place,
    Visible,
    Enabled,
    Caption,
    ToolTip,
    Colors,
    Font,
    Items,
    Value,
    Picture,
    PictureNow,  ///< the picture is complete: it is shown at once instead of when events run next
    Text,
    Locked,
    Spoken,
    Update  ///< nothing is different; pending painting has to be done now
};

/// The window of a widget. It is told of every change and never keeps state of its own.
class Peer {
  public:
    virtual ~Peer() = default;
    virtual void changed(Change what) = 0;
};

/// Mouse buttons as events number them; in a move event they add up.
namespace mouse_button {
inline constexpr int kLeft = 1;
inline constexpr int kRight = 2;
inline constexpr int kMiddle = 4;
}  // namespace mouse_button

/// x and y in the scale of the widget that gets the event: twips, or user units in a picture box with a user scale.
/// `shift`: 1 for Shift, 2 for Ctrl, 4 for Alt, which a move does not tell.
using MouseHandler = std::function<void(int button, int shift, double x, double y)>;
using Handler = std::function<void()>;
/// A key by its virtual code (Escape is 27), `shift` as in mouse events; true when the key was used.
using KeyHandler = std::function<bool(int key, int shift)>;

/// Place in twips (1/1440 inch) relative to the parent.
struct Place {
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;
    friend bool operator==(const Place&, const Place&) = default;
};

/// The texts that a screen reader reads for a widget in addition to its window's text.
struct Spoken {
    std::wstring name;
    std::wstring help;                    ///< what its keys do
    std::function<std::wstring()> value;  ///< what it shows at the moment
};

class Widget {
  public:
    /// `parent` must outlive the widget; nullptr makes a root.
    Widget(WidgetKind kind, Widget* parent, std::wstring name);
    virtual ~Widget();
    Widget(const Widget&) = delete;
    Widget& operator=(const Widget&) = delete;

    [[nodiscard]] WidgetKind kind() const noexcept { return kind_; }
    [[nodiscard]] const std::wstring& name() const noexcept { return name_; }
    [[nodiscard]] Widget* parent() const noexcept { return parent_; }
    /// In the order of creation, which is the order of the Tab key.
    [[nodiscard]] const std::vector<Widget*>& children() const noexcept { return children_; }

    [[nodiscard]] const Place& place() const noexcept { return place_; }
    [[nodiscard]] double left() const noexcept { return place_.left; }
    [[nodiscard]] double top() const noexcept { return place_.top; }
    [[nodiscard]] double width() const noexcept { return place_.width; }
    [[nodiscard]] double height() const noexcept { return place_.height; }
    void setLeft(double twips) { move({twips, top(), width(), height()}); }
    void setTop(double twips) { move({left(), twips, width(), height()}); }
    void setWidth(double twips) { move({left(), top(), twips, height()}); }
    void setHeight(double twips) { move({left(), top(), width(), twips}); }
    /// Throws RuntimeError 380 for a negative size and 6 for a number that is not finite; nothing moves then.
    void move(const Place& place);

    [[nodiscard]] bool visible() const {
        settle();
        return visible_;
    }
    void setVisible(bool visible);
    [[nodiscard]] bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled);
    [[nodiscard]] const std::wstring& caption() const {
        settle();
        return caption_;
    }
    void setCaption(std::wstring caption);
    /// `describe` sets caption and visibility when one of them is next read or set, so that a text that changes a
    /// thousand times between two reads is formatted once. It replaces a pending one.
    void describeLater(Handler describe);
    [[nodiscard]] const std::wstring& toolTip() const noexcept { return toolTip_; }
    void setToolTip(std::wstring toolTip);
    [[nodiscard]] raster::OleColor backColor() const noexcept { return backColor_; }
    virtual void setBackColor(raster::OleColor color);
    [[nodiscard]] raster::OleColor foreColor() const noexcept { return foreColor_; }
    void setForeColor(raster::OleColor color);
    [[nodiscard]] const raster::Font& font() const noexcept { return font_; }
    void setFont(const raster::Font& font);

    /// The numbers of visible changes in a tree of widgets, kept by its root. Changes of captions and visibility are
    /// counted separately because they occur with every channel while a host adds channels.
    struct Looks {
        std::uint64_t changes = 0;
        std::uint64_t captions = 0;
        friend bool operator==(const Looks&, const Looks&) = default;
    };
    [[nodiscard]] const Looks& looks() const noexcept { return looks_; }

    [[nodiscard]] Peer* peer() const noexcept { return peer_; }
    void setPeer(Peer* peer) noexcept { peer_ = peer; }

    Handler onClick;
    /// The second press of a double-click, at its own position.
    MouseHandler onDblClick;
    MouseHandler onMouseDown;
    MouseHandler onMouseMove;
    MouseHandler onMouseUp;
    /// The mouse capture, held since a button was pressed here, was lost to another window or to the system.
    Handler onMouseLost;
    KeyHandler onKeyDown;
    /// Whether the widget uses a key before the host's form gets it. Without a handler it uses none.
    std::function<bool(int key)> wantsKey;
    /// The same for a key together with Alt.
    std::function<bool(int key)> wantsAltKey;
    /// The wheel was turned while the widget has the focus and the pointer is over it, at `x` in the widget's scale.
    /// `delta`: 120ths of a notch, above 0 away from the user. True when it was used; the parent gets it otherwise.
    std::function<bool(int delta, int shift, double x)> onWheel;
    /// The mouse's buttons to go back and forward; true when used.
    std::function<bool()> onBack;
    std::function<bool()> onForward;
    /// A click gives the widget the focus. Has to be set before the widget has a window.
    bool takesFocus = false;
    Spoken spoken;
    /// Paints pending changes of the widget and of those inside it at once instead of when events run next.
    void update() {
        if (peer_)
            peer_->changed(Change::Update);
    }
    /// The result of `spoken.value` has changed.
    void tellSpoken() {
        if (peer_)
            peer_->changed(Change::Spoken);
    }

  protected:
    void tellPeer(Change what);
    /// Adopts a place that the window already has.
    void adoptPlace(const Place& place);
    /// For changes that the window is not told of.
    void countChange(Change what) noexcept;
    /// Called after the place has changed, before the window is told.
    virtual void placed() {}

  private:
    void settle() const {
        if (later_)
            describe();
    }
    void describe() const;

    WidgetKind kind_;
    Widget* parent_;
    std::wstring name_;
    std::vector<Widget*> children_;
    Place place_;
    bool visible_ = true;
    bool enabled_ = true;
    std::wstring caption_;
    std::wstring toolTip_;
    raster::OleColor backColor_ = raster::system_color::kButtonFace;
    raster::OleColor foreColor_ = raster::system_color::kButtonText;
    raster::Font font_;
    mutable Handler later_;
    mutable Peer* peer_ = nullptr;  ///< none while a caption is described
    Looks looks_;
};

class Frame : public Widget {
  public:
    Frame(Widget* parent, std::wstring name) : Widget(WidgetKind::Frame, parent, std::move(name)) {}
};

class Label : public Widget {
  public:
    Label(Widget* parent, std::wstring name) : Widget(WidgetKind::Label, parent, std::move(name)) {}
    /// Centers the line vertically in the label. Has to be set before the label has a window.
    bool middle = false;
};

/// The character that presses a button or check box together with Alt, in upper case: the one after the first single
/// "&" of the caption; 0 for none. "&&" shows an ampersand.
[[nodiscard]] wchar_t accessKey(std::wstring_view caption) noexcept;

/// The picture on a button without a caption.
enum class Glyph { None, ToCenter };

class Button : public Widget {
  public:
    Button(Widget* parent, std::wstring name) : Widget(WidgetKind::Button, parent, std::move(name)) {}
    /// Has to be set before the button has a window.
    Glyph glyph = Glyph::None;
};

class TextBox : public Widget {
  public:
    TextBox(Widget* parent, std::wstring name) : Widget(WidgetKind::TextBox, parent, std::move(name)) {
        setBackColor(raster::system_color::kWindowBackground);
        setForeColor(raster::system_color::kWindowText);
    }
    /// Any characters, any length.
    [[nodiscard]] const std::wstring& text() const noexcept { return text_; }
    /// Raises `onChange` when the text differs, as the user's edits do.
    void setText(std::wstring text);
    /// A locked text can be selected and copied, not edited by the user.
    [[nodiscard]] bool locked() const noexcept { return locked_; }
    void setLocked(bool locked);

    /// Has to be set before the box has a window.
    bool multiLine = false;
    Handler onChange;

    /// Called by the window with the text after an edit by the user.
    void typed(std::wstring text);

  private:
    std::wstring text_;
    bool locked_ = false;
};

class CheckBox : public Widget {
  public:
    CheckBox(Widget* parent, std::wstring name) : Widget(WidgetKind::CheckBox, parent, std::move(name)) {}
    /// 0 cleared, 1 ticked.
    [[nodiscard]] int value() const noexcept { return value_; }
    /// Setting it from the program raises no click.
    void setValue(int value);

  private:
    int value_ = 0;
};

/// A drop-down list without an edit field.
class ComboBox : public Widget {
  public:
    ComboBox(Widget* parent, std::wstring name) : Widget(WidgetKind::ComboBox, parent, std::move(name)) {
        setBackColor(raster::system_color::kWindowBackground);
        setForeColor(raster::system_color::kWindowText);
    }
    void clear();
    void addItem(std::wstring item);
    [[nodiscard]] const std::vector<std::wstring>& items() const noexcept { return items_; }
    /// -1: none chosen.
    [[nodiscard]] int listIndex() const noexcept { return listIndex_; }
    /// Throws RuntimeError 380 outside -1 to the last item. Setting it from the program raises no click.
    void setListIndex(int index);
    /// The chosen item, empty when there is none.
    [[nodiscard]] std::wstring text() const;

  private:
    std::vector<std::wstring> items_;
    int listIndex_ = -1;
};

}  // namespace kv::formenv
