#include "host/windows/child_window.h"

namespace korvel::windows {
namespace {

// A window's device context with a font in it.
class FontContext {
 public:
  FontContext(HWND window, HFONT font)
      : window_(window), context_(GetDC(window)), former_(SelectObject(context_, font)) {}
  ~FontContext() {
    SelectObject(context_, former_);
    ReleaseDC(window_, context_);
  }
  FontContext(const FontContext&) = delete;
  FontContext& operator=(const FontContext&) = delete;

  [[nodiscard]] HDC get() const { return context_; }

 private:
  HWND window_;
  HDC context_;
  HGDIOBJ former_;
};

int width_in(HDC context, std::wstring_view text) {
  SIZE size{};
  GetTextExtentPoint32W(context, text.data(), static_cast<int>(text.size()), &size);
  return size.cx;
}

}  // namespace

OwnedWindow make_child(HWND parent, const wchar_t* class_name, ChildStyle style,
                       const std::wstring& text) {
  const auto module = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(parent, GWLP_HINSTANCE));
  return OwnedWindow(CreateWindowExW(style.extended, class_name, text.c_str(),
                                     style.style | WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, parent,
                                     nullptr, module, nullptr));
}

std::wstring text_of(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

void show_text(HWND window, const std::wstring& text) {
  if (text_of(window) != text) SetWindowTextW(window, text.c_str());
}

void show_enabled(HWND window, bool enabled) {
  if ((IsWindowEnabled(window) != FALSE) != enabled) EnableWindow(window, enabled ? TRUE : FALSE);
}

void place(HWND window, const Rect& rect) {
  SetWindowPos(window, nullptr, rect.left, rect.top, rect.width, rect.height,
               SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

std::wstring with_ampersands_doubled(std::wstring_view text) {
  std::wstring doubled;
  for (const wchar_t unit : text)
    doubled.append(unit == L'&' ? 2 : 1, unit);
  return doubled;
}

int text_width(HWND window, HFONT font, std::wstring_view text) {
  return width_in(FontContext(window, font).get(), text);
}

OwnedFont message_font(HWND window, bool bold) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0,
                             GetDpiForWindow(window));
  if (bold) metrics.lfMessageFont.lfWeight = FW_BOLD;
  return OwnedFont(CreateFontIndirectW(&metrics.lfMessageFont));
}

FontUnits font_units(HWND window, HFONT font) {
  constexpr std::wstring_view letters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const FontContext context(window, font);
  TEXTMETRICW metrics{};
  GetTextMetricsW(context.get(), &metrics);
  return {(width_in(context.get(), letters) + 26) / 52, metrics.tmHeight};
}

}  // namespace korvel::windows
