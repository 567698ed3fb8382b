// Breaks an entity so that the new pieces carry what it carries.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/drawing_host.h"

namespace korvel {

// Copies of the entries go to every entity of model space that is not in the snapshot. One that
// cannot be opened for writing is skipped.
void store_on_new_entities(DrawingHost& host, const EntityList& snapshot,
                           const std::vector<ExtensionEntry>& entries);

// Runs the host's break command on the entity. `saved` is replaced by copies of what the entity's
// extension dictionary holds; when the break has ended they go to the entities that it made, and
// `saved` is emptied. A break that was cancelled or failed leaves them in it.
void break_carrying_data(DrawingHost& host, EntityId entity, std::vector<ExtensionEntry>& saved);

namespace detail {

// Waits for the end of one command of the host. It is among the host's reactors only while it is
// active: from watch() to the end of a command of that name, however that ends. The host must
// outlive it.
class command final : public EditorReactor {
 public:
  using Callback = std::function<void(const EntityList& snapshot)>;

  explicit command(DrawingHost& host) : host_(host) {}
  ~command() override { stop(); }
  command(const command&) = delete;
  command& operator=(const command&) = delete;

  // The callback is called once, after an end that is no cancel and no failure, and is given the
  // entities that are in model space now. Names are compared without case.
  void watch(std::wstring_view name, Callback callback);
  [[nodiscard]] bool is_active() const { return active_; }

  void command_ended(std::wstring_view name) override;
  void command_cancelled(std::wstring_view name) override;
  void command_failed(std::wstring_view name) override;

 private:
  [[nodiscard]] bool is_watched(std::wstring_view name) const;
  void stop();

  DrawingHost& host_;
  bool active_ = false;
  std::wstring name_;  // lower case
  Callback callback_;
  EntityList snapshot_;
};

}  // namespace detail

}  // namespace korvel
