// Controls of one line of text, and the check box. What is typed is in the model at once, so that a
// button finds it there however it is pressed.
#include <algorithm>
#include <cstdint>
#include <utility>

#include "frame/file_bytes.h"
#include "frame/value_text.h"
#include "host/windows/control_view.h"

namespace korvel::windows {
namespace {

constexpr ChildStyle edit_style = {WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE};

// A field and the model's text behind it. `Model` is an Edit or one derived from it.
template <class Model>
class FieldView : public ControlView {
 public:
  FieldView(Model& model, ViewSite& site)
      : ControlView(site), model_(model), field_(make(WC_EDITW, edit_style)) {
    // The field's own limit would cut longer texts.
    SendMessageW(field_.get(), EM_SETLIMITTEXT, 0, 0);
  }

  [[nodiscard]] std::vector<HWND> windows() const override { return {field_.get()}; }
  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Line, .width = characters(32), .stretches = true};
  }
  void show() override { show_text(field_.get(), model_.text); }
  void on_command(HWND sender, int code) override {
    if (sender != field_.get() || code != EN_CHANGE) return;
    site().change(model_, [this] {
      std::wstring typed = text_of(field_.get());
      if (typed == model_.text) return false;
      model_.text = std::move(typed);
      return true;
    });
  }

 protected:
  [[nodiscard]] Model& model() const { return model_; }
  [[nodiscard]] HWND field() const { return field_.get(); }

 private:
  Model& model_;
  OwnedWindow field_;
};

class SpinView final : public FieldView<Spin> {
 public:
  SpinView(Spin& spin, ViewSite& site)
      : FieldView(spin, site), arrows_(make(UPDOWN_CLASSW, {.style = 0})) {
    // A position of its own would run against an end; only the steps count.
    SendMessageW(arrows_.get(), UDM_SETRANGE32, static_cast<WPARAM>(INT32_MIN), INT32_MAX);
  }

  [[nodiscard]] std::vector<HWND> windows() const override { return {field(), arrows_.get()}; }
  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Line, .width = characters(14)};
  }
  void place(const Rect& body) override {
    const int width =
        std::min(GetSystemMetricsForDpi(SM_CXVSCROLL, GetDpiForWindow(field())), body.width);
    windows::place(field(), {body.left, body.top, body.width - width, body.height});
    windows::place(arrows_.get(), {body.right() - width, body.top, width, body.height});
  }
  LRESULT on_notify(const NMHDR& header) override {
    if (header.code != UDN_DELTAPOS) return 0;
    step(reinterpret_cast<const NMUPDOWN&>(header).iDelta);
    return TRUE;  // the arrows stay where they are
  }
  bool on_key(HWND focus, WPARAM key) override {
    if (focus != field() || (key != VK_UP && key != VK_DOWN)) return false;
    step(key == VK_UP ? 1 : -1);
    return true;
  }

 private:
  // The range binds the steps alone.
  void step(int by) {
    site().change(model(), [this, by] {
      const std::int64_t wanted = std::int64_t{read_integer(model().text)} + by;
      std::wstring text =
          std::to_wstring(std::clamp<std::int64_t>(wanted, model().min, model().max));
      if (text == model().text) return false;
      model().text = std::move(text);
      return true;
    });
  }

  OwnedWindow arrows_;
};

class FileChooserView final : public ControlView {
 public:
  FileChooserView(FileChooser& chooser, ViewSite& site)
      : ControlView(site),
        chooser_(chooser),
        field_(make(WC_EDITW, edit_style)),
        button_(make(WC_BUTTONW, {.style = WS_TABSTOP | BS_PUSHBUTTON}, L"...")) {
    SendMessageW(field_.get(), EM_SETLIMITTEXT, 0, 0);
  }

  [[nodiscard]] std::vector<HWND> windows() const override { return {field_.get(), button_.get()}; }
  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Line, .width = characters(48), .stretches = true};
  }
  void place(const Rect& body) override {
    const int gap = site().units().across(2);
    const int width = std::min(site().units().across(16), body.width);
    windows::place(field_.get(),
                   {body.left, body.top, std::max(body.width - width - gap, 0), body.height});
    windows::place(button_.get(), {body.right() - width, body.top, width, body.height});
  }
  // The field is left alone while it names the path, in whatever form that was typed.
  void show() override {
    if (path_of(text_of(field_.get())) != chooser_.path)
      show_text(field_.get(), path_text(chooser_.path));
  }
  void on_command(HWND sender, int code) override {
    if (sender == field_.get() && code == EN_CHANGE) take(path_of(text_of(field_.get())));
    if (sender == button_.get() && code == BN_CLICKED) {
      if (std::optional<std::filesystem::path> path = site().owner().choose_file(chooser_.filter))
        take(std::move(*path));
    }
  }

 private:
  void take(std::filesystem::path path) {
    site().change(chooser_, [this, &path] {
      if (path == chooser_.path) return false;
      chooser_.path = std::move(path);
      return true;
    });
  }

  FileChooser& chooser_;
  OwnedWindow field_;
  OwnedWindow button_;
};

// Fields, too, so that their text can be copied.
class ReadOnlyView final : public ControlView {
 public:
  ReadOnlyView(ReadOnlyText& text, ViewSite& site)
      : ControlView(site),
        text_(text),
        is_block_(text.label.empty() || text.text.find(L'\n') != std::wstring::npos),
        field_(make(WC_EDITW, is_block_ ? ChildStyle{block_style | WS_TABSTOP, WS_EX_CLIENTEDGE}
                                        : ChildStyle{ES_READONLY | ES_AUTOHSCROLL, 0})) {}

  [[nodiscard]] std::vector<HWND> windows() const override { return {field_.get()}; }
  [[nodiscard]] LayoutItem layout() const override {
    if (!is_block_) return {.shape = Shape::Line, .width = characters(32), .stretches = true};
    return {.shape = Shape::Block,
            .width = characters(30),
            .least_height = lines(3),
            .wanted_height = lines(9)};
  }
  void place(const Rect& body) override {
    const int down = is_block_ ? 0 : site().units().down(3);
    windows::place(field_.get(), {body.left, body.top + down, body.width, body.height - down});
  }
  void show() override {
    std::wstring shown;
    for (const wchar_t unit : text_.text) {
      if (unit == L'\n') shown += L'\r';
      shown += unit;
    }
    show_text(field_.get(), shown);
  }

 private:
  static constexpr DWORD block_style = ES_READONLY | ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL;

  ReadOnlyText& text_;
  bool is_block_;  // a text that has lines when the dialog opens, or one that stands for itself
  OwnedWindow field_;
};

class CheckBoxView final : public ControlView {
 public:
  CheckBoxView(CheckBox& box, ViewSite& site)
      : ControlView(site),
        box_(box),
        button_(make(WC_BUTTONW, {.style = WS_TABSTOP | BS_AUTOCHECKBOX},
                     with_ampersands_doubled(box.label))) {}

  [[nodiscard]] std::vector<HWND> windows() const override { return {button_.get()}; }
  [[nodiscard]] LayoutItem layout() const override {
    return {
        .shape = Shape::Check,
        .width = text_width(button_.get(), site().font(), box_.label) + site().units().down(16)};
  }
  void show() override {
    if (is_on() != box_.on)
      SendMessageW(button_.get(), BM_SETCHECK, box_.on ? BST_CHECKED : BST_UNCHECKED, 0);
  }
  void on_command(HWND /*sender*/, int code) override {
    if (code != BN_CLICKED) return;
    site().change(box_, [this] {
      const bool on = is_on();
      return std::exchange(box_.on, on) != on;
    });
  }

 private:
  [[nodiscard]] bool is_on() const {
    return SendMessageW(button_.get(), BM_GETCHECK, 0, 0) == BST_CHECKED;
  }

  CheckBox& box_;
  OwnedWindow button_;
};

}  // namespace

std::unique_ptr<ControlView> make_view(CheckBox& box, ViewSite& site) {
  return std::make_unique<CheckBoxView>(box, site);
}

std::unique_ptr<ControlView> make_view(Edit& edit, ViewSite& site) {
  return std::make_unique<FieldView<Edit>>(edit, site);
}

std::unique_ptr<ControlView> make_view(Spin& spin, ViewSite& site) {
  return std::make_unique<SpinView>(spin, site);
}

std::unique_ptr<ControlView> make_view(ReadOnlyText& text, ViewSite& site) {
  return std::make_unique<ReadOnlyView>(text, site);
}

std::unique_ptr<ControlView> make_view(FileChooser& chooser, ViewSite& site) {
  return std::make_unique<FileChooserView>(chooser, site);
}

}  // namespace korvel::windows
