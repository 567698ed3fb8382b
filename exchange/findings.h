// Counts what is found of a kind and keeps the first examples.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvel {

class Findings {
 public:
  explicit Findings(std::size_t most_examples = 3) : most_(most_examples) {}

  // `describe` gives the example's text; it is called only if the example is kept.
  template <class Describe>
  void add(const Describe& describe) {
    if (count_++ < most_) examples_.push_back(describe());
  }

  [[nodiscard]] std::size_t count() const { return count_; }
  [[nodiscard]] const std::vector<std::wstring>& examples() const { return examples_; }

  // The examples in one line, with dots where there are more.
  [[nodiscard]] std::wstring list() const;

 private:
  std::size_t most_;
  std::size_t count_ = 0;
  std::vector<std::wstring> examples_;
};

// The text in one line, or its beginning if it is long: CR is \r, LF \n, a backslash \\.
[[nodiscard]] std::wstring excerpt(std::wstring_view text);

}  // namespace korvel
