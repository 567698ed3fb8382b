#include "host/standalone/dxf/document.h"

#include <algorithm>

#include "host/standalone/dxf/document_reader.h"
#include "host/standalone/dxf/number_text.h"

namespace korvel::dxf {

// Joins neighbouring stretches of the file, so that an unchanged drawing is one write.
class RunWriter {
 public:
  explicit RunWriter(const Document::ByteSink& sink) : sink_(sink) {}

  bool add(std::string_view bytes) {
    if (run_.data() + run_.size() == bytes.data()) {
      run_ = {run_.data(), run_.size() + bytes.size()};
      return true;
    }
    const bool written = flush();
    run_ = bytes;
    return written;
  }
  bool add_copy(std::string_view bytes) { return flush() && sink_(bytes); }
  bool flush() {
    const bool written = run_.empty() || sink_(run_);
    run_ = {};
    return written;
  }

 private:
  const Document::ByteSink& sink_;
  std::string_view run_;
};

Result<Document> Document::read(std::string bytes, const std::string& name,
                                const ItemVisitor& visit) {
  return DocumentReader(name, visit).read(std::move(bytes));
}

std::string_view Document::bytes(const Span& span) const {
  const std::string_view file = original_;
  if (span.offset < file.size()) return file.substr(span.offset, span.length);
  return std::string_view(added_).substr(span.offset - file.size(), span.length);
}

ItemFacts Document::facts_of(ItemIndex index) const {
  FactsCollector collector;
  GroupReader reader = groups(index);
  Group group;
  (void)reader.next(group);
  while (reader.next(group) && group.code != 0)
    collector.take(group);
  collector.end();
  return collector.facts;
}

std::uint64_t Document::owner_of(ItemIndex index) const {
  FactsCollector collector;
  GroupReader reader = groups(index);
  Group group;
  (void)reader.next(group);
  while (reader.next(group) && group.code != 0 && group.code != 100)
    collector.take(group);
  return collector.facts.owner;
}

std::string Document::spelling_of(std::uint64_t handle) const {
  if (const std::optional<ItemIndex> item = by_handle(handle)) {
    GroupReader reader = groups(*item);
    Group group;
    while (reader.next(group)) {
      const bool is_handle = group.code == 5 || group.code == 105;
      if (is_handle && group.handle() == handle) return std::string(trimmed(group.value));
    }
  }
  std::string digits;
  append_handle(digits, handle);
  return digits;
}

std::optional<ItemIndex> Document::by_handle(std::uint64_t handle) const {
  return handle == 0 ? std::nullopt : handles_.find(handle);
}

Span Document::store(std::string_view bytes) {
  const Span span{original_.size() + added_.size(), static_cast<std::uint32_t>(bytes.size())};
  added_ += bytes;
  return span;
}

Span Document::store_over(const Span& former, std::string_view bytes) {
  const bool is_last = former.offset + former.length == original_.size() + added_.size();
  if (!is_last || former.offset < original_.size()) return store(bytes);
  added_.replace(former.offset - original_.size(), former.length, bytes);
  return {former.offset, static_cast<std::uint32_t>(bytes.size())};
}

ItemIndex Document::add_before(ItemIndex terminator, std::string_view bytes, std::uint64_t handle) {
  Item item;
  item.span = store(bytes);
  item.section = items_[terminator].section;
  item.handle = handle;
  const auto index = static_cast<ItemIndex>(items_.size());
  if (handle != 0) (void)handles_.enter(handle, index);
  items_.push_back(item);
  refresh_type(index);
  added_before_[terminator].push_back(index);
  return index;
}

void Document::refresh_type(ItemIndex index) {
  GroupReader reader = groups(index);
  Group head;
  if (!reader.next(head) || head.code != 0 || head.value == type_of(index)) return;
  const auto found = std::ranges::find(type_names_, head.value);
  items_[index].type = static_cast<std::uint16_t>(found - type_names_.begin());
  if (found == type_names_.end()) type_names_.emplace_back(head.value);
}

std::optional<ItemIndex> Document::end_of(Section section) const {
  const auto found = section_ends_.find(section);
  if (found == section_ends_.end()) return std::nullopt;
  return found->second;
}

std::optional<ItemIndex> Document::end_of_table(std::string_view table) const {
  const auto found = table_ends_.find(std::string(table));
  if (found == table_ends_.end()) return std::nullopt;
  return found->second;
}

std::uint64_t Document::new_handle() {
  if (!has_handles_) return 0;
  while (next_handle_ == 0 || handles_.find(next_handle_) || kept_free_.contains(next_handle_))
    ++next_handle_;
  handles_given_out_ = true;
  return next_handle_++;
}

std::optional<Group> Document::variable(std::string_view name) const {
  return header_ ? variable_in(items_[*header_].span, name) : std::nullopt;
}

std::optional<Group> Document::variable_in_file(std::string_view name) const {
  return header_ ? variable_in(header_in_file_, name) : std::nullopt;
}

std::optional<Group> Document::variable_in(const Span& header, std::string_view name) const {
  GroupReader reader(bytes(header), manner_.framing);
  Group group;
  while (reader.next(group)) {
    if (group.code != 9 || group.value != name) continue;
    Group value;
    if (!reader.next(value) || value.code == 9 || value.code == 0) return std::nullopt;
    const bool single = !reader.next(group) || group.code == 9 || group.code == 0;
    return single ? std::optional(value) : std::nullopt;
  }
  return std::nullopt;
}

bool Document::set_variable(std::string_view name, std::string_view raw_value) {
  const std::optional<Group> former = variable(name);
  if (!former) return false;
  Item& header = items_[*header_];
  const std::string_view whole = bytes(header.span);
  const auto at = static_cast<std::size_t>(former->value.data() - whole.data());
  std::string changed(whole);
  changed.replace(at, former->value.size(), raw_value);
  header.span = changed == bytes(header_in_file_) ? header_in_file_ : store(changed);
  return true;
}

std::string Document::header_with_seed() const {
  std::string header(bytes(*header_));
  const std::optional<Group> seed = variable("$HANDSEED");
  if (!seed || seed->code != 5) return header;  // damaged: no group that holds a handle
  std::string digits;
  append_handle(digits, next_handle_);
  const auto at = static_cast<std::size_t>(seed->value.data() - bytes(*header_).data());
  return header.replace(at, seed->value.size(), digits);
}

bool Document::write_item(ItemIndex index, const Substitutions& substitutions,
                          RunWriter& out) const {
  const Item& item = items_[index];
  if (item.span.erased) return true;
  if (!substitutions.concerns(index)) return out.add(bytes(item.span));
  std::string substitute;
  substitutions.substitute(index, substitute);
  return out.add_copy(substitute);
}

bool Document::write(const ByteSink& sink, const Substitutions& substitutions) const {
  RunWriter out(sink);
  const std::optional<ItemIndex> objects_end = end_of(Section::Objects);
  const bool new_seed = header_ && handles_given_out_;
  for (ItemIndex index = 0; index < items_in_file_; ++index) {
    if (const auto added = added_before_.find(index); added != added_before_.end()) {
      for (const ItemIndex addition : added->second) {
        if (!write_item(addition, substitutions, out)) return false;
      }
    }
    if (index == objects_end && !(out.flush() && substitutions.write_new_objects(sink))) {
      return false;
    }
    const bool written = new_seed && index == *header_ ? out.add_copy(header_with_seed())
                                                       : write_item(index, substitutions, out);
    if (!written) return false;
  }
  return out.flush();
}

}  // namespace korvel::dxf
