#include "frame/od_value.h"

namespace korvel {

std::wstring_view type_name(ODType type) {
  switch (type) {
    case ODType::Integer:
      return L"Integer";
    case ODType::Real:
      return L"Real";
    case ODType::Character:
      return L"Character";
    case ODType::Point:
      return L"Point";
    case ODType::Unknown:
      break;
  }
  return L"Unknown";
}

ODValueView view_of(const ODValue& value) {
  return std::visit([](const auto& held) -> ODValueView { return held; }, value);
}

ODValue copy_of(const ODValueView& value) {
  struct Copy {
    ODValue operator()(std::wstring_view text) const { return std::wstring(text); }
    ODValue operator()(std::monostate none) const { return none; }
    ODValue operator()(std::int32_t number) const { return number; }
    ODValue operator()(double number) const { return number; }
    ODValue operator()(const Point3& point) const { return point; }
  };
  return std::visit(Copy{}, value);
}

ODValue zero_value(ODType type) {
  switch (type) {
    case ODType::Integer:
      return std::int32_t{0};
    case ODType::Real:
      return 0.0;
    case ODType::Character:
      return std::wstring{};
    case ODType::Point:
      return Point3{};
    case ODType::Unknown:
      break;
  }
  return {};
}

}  // namespace korvel
