// Reads and changes the properties that every entity has.
#include <algorithm>
#include <array>
#include <limits>
#include <utility>
#include <vector>

#include "frame/case_mapping.h"
#include "host/standalone/entity_reader.h"
#include "host/standalone/entity_records.h"
#include "host/standalone/entity_writer.h"

namespace korvel {
namespace {

// The groups that all entities share, in the order in which they are written.
constexpr std::array<int, 14> common_order{67,  8,   6,   62,  440, 48,  60,
                                           420, 347, 370, 430, 348, 284, 390};

// Place in that order, from 1; 0 for the groups in front of them.
std::size_t rank_of(int code) {
  const auto* const place = std::ranges::find(common_order, code);
  return place == common_order.end() ? 0
                                     : static_cast<std::size_t>(place - common_order.begin()) + 1;
}

// Visits the groups of the head record that all entities share, as visit(group, in_place). They end
// where the groups of the entity's type begin; a layer that some programs write behind them still
// counts, but is not in place. Without subclass markers the whole record is visited.
template <class Visit>
void for_each_common_group(dxf::GroupReader groups, Visit&& visit) {
  EntityRecords records(groups);
  if (!records.next_record()) return;
  bool in_common_part = true;
  dxf::Group group;
  while (records.next(group)) {
    if (group.code == 100 && group.value != "AcDbEntity") in_common_part = false;
    if (in_common_part || group.code == 8) visit(group, in_common_part);
  }
}

int read_int(const dxf::Group& group, int otherwise) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(
      std::clamp<std::int64_t>(group.integer(otherwise), Limits::min(), Limits::max()));
}

// Where one property stands, or would stand, in the bytes of the entity.
struct Place {
  int code = 0;
  bool is_there = false;
  std::size_t begin = 0;
  std::size_t end = 0;
};

class PropertyEditor {
 public:
  PropertyEditor(std::string_view bytes, const dxf::Manner& manner, const dxf::TextCodec& codec)
      : bytes_(bytes), groups_(bytes, manner.framing), manner_(manner), codec_(codec) {
    find_places();
  }

  std::string edited(const EntityProperties& wanted) {
    const EntityProperties present = read_properties(groups_, codec_);
    edit(8, !equal_ignoring_case(wanted.layer, present.layer), wanted);
    edit(6, !equal_ignoring_case(wanted.linetype, present.linetype), wanted);
    edit(62, wanted.color != present.color, wanted);
    edit(48, wanted.linetype_scale != present.linetype_scale, wanted);
    edit(420, wanted.true_color != present.true_color, wanted);
    edit(370, wanted.lineweight != present.lineweight, wanted);
    edit(430, wanted.book_color != present.book_color, wanted);
    return joined();
  }

 private:
  struct Edit {
    Place place;
    std::string replacement;
  };

  void find_places() {
    dxf::GroupReader head = groups_;
    dxf::Group first;
    (void)head.next(first);
    for (std::size_t i = 0; i < places_.size(); ++i) {
      places_[i] = {.code = common_order[i], .begin = first.end, .end = first.end};
    }
    for_each_common_group(
        groups_, [this](const dxf::Group& group, bool in_place) { note(group, in_place); });
  }

  // A group that is missing stands behind the last of those that precede it.
  void note(const dxf::Group& group, bool in_place) {
    const std::size_t rank = rank_of(group.code);
    if (rank == 0 && group.code != 5 && group.code != 330 && group.code != 100) return;
    for (Place& place : places_) {
      if (place.is_there) continue;
      if (place.code == group.code) {
        place = {group.code, true, group.begin, group.end};
      } else if (in_place && rank_of(place.code) > rank) {
        place.begin = place.end = group.end;
      }
    }
  }

  void edit(int code, bool changes, const EntityProperties& wanted) {
    if (!changes) return;
    const Place& place = places_[rank_of(code) - 1];
    std::string replacement;
    dxf::GroupWriter writer(manner_, codec_, replacement);
    write_property(code, wanted, writer);
    if (place.is_there || !replacement.empty()) {
      edits_.push_back({place, std::move(replacement)});
    }
  }

  std::string joined() {
    std::ranges::stable_sort(edits_, {}, [](const Edit& edit) {
      return std::pair(edit.place.begin, rank_of(edit.place.code));
    });
    std::string out;
    std::size_t copied = 0;
    for (const Edit& edit : edits_) {
      out += bytes_.substr(copied, edit.place.begin - copied);
      out += edit.replacement;
      copied = edit.place.end;
    }
    out += bytes_.substr(copied);
    return out;
  }

  std::string_view bytes_;
  dxf::GroupReader groups_;
  const dxf::Manner& manner_;
  const dxf::TextCodec& codec_;
  std::array<Place, common_order.size()> places_;
  std::vector<Edit> edits_;
};

}  // namespace

bool is_common_property(int code) { return rank_of(code) != 0 || code == 410; }

EntityProperties read_properties(dxf::GroupReader groups, const dxf::TextCodec& codec) {
  EntityProperties properties;
  std::array<bool, common_order.size() + 1> seen{};
  for_each_common_group(groups, [&](const dxf::Group& group, bool) {
    // Of groups that come twice the first counts.
    if (std::exchange(seen[rank_of(group.code)], true) && rank_of(group.code) != 0) return;
    std::int64_t rgb = 0;
    switch (group.code) {
      case 6:
        codec.decode(group.value, properties.linetype);
        break;
      case 8:
        codec.decode(group.value, properties.layer);
        break;
      case 48:
        properties.linetype_scale = group.real(properties.linetype_scale);
        break;
      case 62:
        properties.color = read_int(group, properties.color);
        break;
      case 370:
        properties.lineweight = read_int(group, properties.lineweight);
        break;
      case 420:
        if (group.read_integer(rgb)) {
          properties.true_color = static_cast<std::int32_t>(rgb & 0xFFFFFF);
        }
        break;
      case 430:
        codec.decode(group.value, properties.book_color);
        break;
      default:
        break;
    }
  });
  return properties;
}

void write_property(int code, const EntityProperties& properties, dxf::GroupWriter& writer) {
  const EntityProperties defaults;
  switch (code) {
    case 8:
      writer.text(8, properties.layer);
      break;
    case 6:
      if (!equal_ignoring_case(properties.linetype, defaults.linetype)) {
        writer.text(6, properties.linetype);
      }
      break;
    case 62:
      if (properties.color != defaults.color) writer.integer(62, properties.color);
      break;
    case 48:
      if (properties.linetype_scale != defaults.linetype_scale) {
        writer.real(48, properties.linetype_scale);
      }
      break;
    case 420:
      if (properties.true_color) writer.integer(420, *properties.true_color);
      break;
    case 370:
      if (properties.lineweight != defaults.lineweight) {
        writer.integer(370, properties.lineweight);
      }
      break;
    case 430:
      if (!properties.book_color.empty()) writer.text(430, properties.book_color);
      break;
    default:
      break;
  }
}

std::string with_properties(std::string_view entity_bytes, const EntityProperties& properties,
                            const dxf::Manner& manner, const dxf::TextCodec& codec) {
  return PropertyEditor(entity_bytes, manner, codec).edited(properties);
}

}  // namespace korvel
