// A value, or one sentence on why there is none.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace korvel {

// The sentence names the file and the place and ends without a full stop.
struct Failure {
  std::string reason;
};

template <class Value>
class Result {
 public:
  Result(Value value) : value_(std::move(value)) {}                // NOLINT: reads as a value
  Result(Failure failure) : reason_(std::move(failure.reason)) {}  // NOLINT

  explicit operator bool() const { return value_.has_value(); }
  [[nodiscard]] Value& operator*() { return *value_; }
  [[nodiscard]] const Value& operator*() const { return *value_; }
  [[nodiscard]] Value* operator->() { return &*value_; }
  [[nodiscard]] const Value* operator->() const { return &*value_; }
  [[nodiscard]] const std::string& reason() const { return reason_; }
  [[nodiscard]] Failure failure() const { return {reason_}; }

 private:
  std::optional<Value> value_;
  std::string reason_;
};

}  // namespace korvel
