// Finds a drawing's objects by handle.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <unordered_map>
#include <vector>

namespace korvel::dxf {

// Handles are nearly always dense and small, so they index a vector; the few that are not (some
// drawings count from 64-bit numbers) go into a map. A handle in the file is a claim: the vector
// never grows beyond a small multiple of what was entered.
class HandleIndex {
 public:
  // False, and nothing entered, when the handle is taken. Handle 0 is no handle.
  bool enter(std::uint64_t handle, std::uint32_t object) {
    ++entered_;
    if (handle >= dense_.size() && handle < slack + 4 * entered_) {
      dense_.resize(static_cast<std::size_t>(slack + 4 * entered_ + entered_ / 2), none);
    }
    if (handle < dense_.size() && !sparse_.contains(handle)) {
      std::uint32_t& place = dense_[static_cast<std::size_t>(handle)];
      if (place != none) return false;
      place = object;
      return true;
    }
    return sparse_.try_emplace(handle, object).second;
  }

  [[nodiscard]] std::optional<std::uint32_t> find(std::uint64_t handle) const {
    if (handle < dense_.size() && dense_[static_cast<std::size_t>(handle)] != none) {
      return dense_[static_cast<std::size_t>(handle)];
    }
    const auto found = sparse_.find(handle);
    if (found == sparse_.end()) return std::nullopt;
    return found->second;
  }

 private:
  static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
  static constexpr std::uint64_t slack = 1024;

  std::vector<std::uint32_t> dense_;
  std::unordered_map<std::uint64_t, std::uint32_t> sparse_;
  std::uint64_t entered_ = 0;
};

}  // namespace korvel::dxf
