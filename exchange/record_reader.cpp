#include "exchange/record_reader.h"

namespace korvel {
namespace {

// So few records are passed as quickly as copies are looked for.
constexpr std::int32_t longest_walk = 16;

}  // namespace

RecordValues RecordReader::at(const RecordKey& key) {
  if (key.number < 1) return {};
  const bool is_ahead = key.entity == here_.entity && key.number >= here_.number;
  if (key.number - (is_ahead ? here_.number : 1) > longest_walk) {
    const Copies& copies = copies_of(key.entity);
    const auto index = static_cast<std::size_t>(key.number) - 1;
    return index < copies.size() ? RecordValues(copies[index]) : RecordValues();
  }
  if (!is_ahead) (void)open(key.entity);
  for (; here_.number < key.number && !records_->done(); ++here_.number)
    records_->next();
  return records_->done() ? RecordValues() : RecordValues(*records_);
}

std::optional<std::int32_t> RecordReader::count(EntityId entity) {
  if (!open(entity)) return std::nullopt;
  return records_->count();
}

bool RecordReader::open(EntityId entity) {
  here_ = {entity, 1};
  return records_->open(entity, OpenMode::Read);
}

const RecordReader::Copies& RecordReader::copies_of(EntityId entity) {
  const auto [place, is_new] = copies_.try_emplace(entity);
  Copies& copies = place->second;
  if (!is_new) return copies;
  for ((void)open(entity); !records_->done(); records_->next(), ++here_.number)
    records_->read(copies.emplace_back());
  return copies;
}

}  // namespace korvel
