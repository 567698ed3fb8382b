#include "exchange/translation_dialog.h"

#include <string>
#include <string_view>

#include "frame/message.h"

namespace korvel {
namespace {

constexpr std::wstring_view to_aliases = L"Name --> Alias";
constexpr std::wstring_view to_names = L"Name <-- Alias";

}  // namespace

ODTranslate::ODTranslate()
    : Dialog(L"KORVEL_TRANSLATE"),
      tables_(L"OD name", std::wstring(text(Message::TextFileFilter))),
      fields_(L"Field", std::wstring(text(Message::TextFileFilter))),
      values_(L"Values", std::wstring(text(Message::TextFileFilter))) {
  add(&tables_);
  add(&fields_);
  add(&values_);
  add(Button{std::wstring(to_aliases), ButtonRole::Accept});
  add(Button{std::wstring(to_names), ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

TranslationRequest ODTranslate::request() const {
  const auto direction =
      pressed() == to_names ? TranslationDirection::ToNames : TranslationDirection::ToAliases;
  return {tables_.path, fields_.path, values_.path, direction};
}

}  // namespace korvel
