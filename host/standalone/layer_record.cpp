#include "host/standalone/layer_record.h"

#include <cstdlib>

namespace korvel {
namespace {

constexpr int flags_code = 70;
constexpr int color_code = 62;
constexpr int name_code = 2;
constexpr int handle_code = 5;
constexpr std::int64_t frozen_bit = 1;
constexpr std::int64_t locked_bit = 4;
constexpr std::int64_t white = 7;

// Hidden layers have no mark of their own: from R2007 on their names begin with an asterisk, before
// that they are saved as ordinary ones.
constexpr std::string_view first_version_with_hidden_layers = "AC1021";

std::int64_t with_bit(std::int64_t flags, std::int64_t bit, bool on) {
  return on ? flags | bit : flags & ~bit;
}

// Copies a record group by group, letting `replace` write something else in place of one.
template <class Replace>
std::string rewritten(const dxf::Document& document, dxf::ItemIndex record, Replace replace) {
  std::string bytes;
  dxf::GroupWriter writer(document.manner(), document.codec(), bytes);
  dxf::GroupReader reader = document.groups(record);
  dxf::Group group;
  while (reader.next(group)) {
    if (replace(group, writer)) continue;
    bytes += document.bytes(record).substr(group.begin, group.end - group.begin);
  }
  return bytes;
}

}  // namespace

void read_layer_state(const dxf::Document& document, dxf::ItemIndex record, Layer& layer) {
  dxf::GroupReader reader = document.groups(record);
  dxf::Group group;
  layer.off = false;
  layer.frozen = false;
  layer.locked = false;
  while (reader.next(group) && group.code < 1000) {
    if (group.code == color_code) layer.off = group.integer() < 0;
    if (group.code == flags_code) {
      layer.frozen = (group.integer() & frozen_bit) != 0;
      layer.locked = (group.integer() & locked_bit) != 0;
    }
  }
  layer.hidden =
      layer.name.starts_with(L'*') && document.at_least(first_version_with_hidden_layers);
}

std::string with_layer_state(const dxf::Document& document, dxf::ItemIndex record,
                             const Layer& layer) {
  return rewritten(document, record, [&layer](const dxf::Group& group, dxf::GroupWriter& writer) {
    const std::int64_t former = group.integer();
    std::int64_t wanted = former;
    if (group.code == flags_code) {
      wanted = with_bit(with_bit(former, frozen_bit, layer.frozen), locked_bit, layer.locked);
    } else if (group.code == color_code) {
      wanted = layer.off ? -std::abs(former) : std::abs(former);
    }
    if (wanted == former) return false;
    writer.integer(group.code, wanted);
    return true;
  });
}

std::string new_layer_record(const dxf::Document& document, dxf::ItemIndex model,
                             std::wstring_view name, std::uint64_t handle) {
  bool in_group = false;
  return rewritten(document, model, [&](const dxf::Group& group, dxf::GroupWriter& writer) {
    if (group.code == 102) {  // its reactors and extension dictionary are the model's own
      in_group = group.value.starts_with('{');
      return true;
    }
    if (in_group || group.code >= 1000) return true;
    if (group.code == handle_code) {
      writer.handle(handle_code, handle);
    } else if (group.code == name_code) {
      writer.text(name_code, name);
    } else if (group.code == flags_code) {
      writer.integer(flags_code, 0);
    } else if (group.code == color_code) {
      writer.integer(color_code, white);
    } else {
      return false;
    }
    return true;
  });
}

}  // namespace korvel
