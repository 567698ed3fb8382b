#include "palettes/sort_keys.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "frame/case_mapping.h"

namespace korvel {

void SortKeys::add(const ODValueView& value) {
  struct Add {
    SortKeys& self;
    void operator()(std::monostate) const { self.keys_.push_back(0); }
    void operator()(std::int32_t number) const { self.keys_.push_back(number); }
    void operator()(double number) const { self.keys_.push_back(number); }
    void operator()(std::wstring_view text) const {
      auto known = self.texts_.find(text);
      if (known == self.texts_.end()) {
        known = self.texts_.emplace(std::wstring(text), self.texts_.size()).first;
      }
      self.keys_.push_back(static_cast<double>(known->second));
    }
    void operator()(const Point3& point) const {
      self.keys_.push_back(static_cast<double>(self.points_.size()));
      self.points_.push_back(point);
    }
  };
  std::visit(Add{*this}, value);
}

void SortKeys::add_handle(std::wstring_view handle) {
  double number = 0;
  for (const wchar_t digit : handle) {
    const bool is_letter = digit > L'9';
    number = number * 16 + static_cast<double>(digit - (is_letter ? L'A' - 10 : L'0'));
  }
  keys_.push_back(number);
}

std::vector<double> SortKeys::take() {
  rank_texts();
  rank_points();
  return std::exchange(keys_, {});
}

void SortKeys::rank_texts() {
  if (texts_.empty()) return;
  struct Text {
    std::wstring lowered;
    std::wstring_view text;
    std::size_t number;
  };
  std::vector<Text> texts;
  texts.reserve(texts_.size());
  for (const auto& [text, number] : texts_)
    texts.push_back({lower(text), text, number});
  std::ranges::sort(texts, {}, [](const Text& text) { return std::tie(text.lowered, text.text); });
  std::vector<double> ranks(texts.size());
  for (std::size_t rank = 0; rank < texts.size(); ++rank)
    ranks[texts[rank].number] = static_cast<double>(rank);
  for (double& key : keys_)
    key = ranks[static_cast<std::size_t>(key)];
  texts_.clear();
}

void SortKeys::rank_points() {
  if (points_.empty()) return;
  const auto coordinates = [](const Point3& point) { return std::tie(point.x, point.y, point.z); };
  std::vector<Point3> distinct = points_;
  std::ranges::sort(distinct, {}, coordinates);
  for (double& key : keys_) {
    const Point3& point = points_[static_cast<std::size_t>(key)];
    key = static_cast<double>(
        std::ranges::lower_bound(distinct, coordinates(point), {}, coordinates) - distinct.begin());
  }
  points_.clear();
}

}  // namespace korvel
