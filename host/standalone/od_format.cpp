#include "host/standalone/od_format.h"

namespace korvel::od_format {
namespace {

// XRECORDs have a cloning flag from R2000 on.
constexpr std::string_view first_version_with_flag = "AC1015";

bool read_text(dxf::GroupReader& reader, dxf::Group& group, bool& more, const dxf::TextCodec& codec,
               std::wstring& text) {
  std::wstring piece;
  codec.decode(group.value, text);
  while (group.code == text_piece_code) {
    more = reader.next(group);
    if (!more || (group.code != text_piece_code && group.code != text_code)) return false;
    codec.decode(group.value, piece);
    text += piece;
  }
  return group.code == text_code;
}

bool read_point(dxf::GroupReader& reader, dxf::Group& group, bool& more, Point3& point) {
  if (group.code != point_code || !group.read_real(point.x)) return false;
  more = reader.next(group);
  if (!more || group.code != point_code + 10 || !group.read_real(point.y)) return false;
  more = reader.next(group);
  return more && group.code == point_code + 20 && group.read_real(point.z);
}

bool read_integer(const dxf::Group& group, std::int32_t& number) {
  std::int64_t read = 0;
  if (group.code != integer_code || !group.read_integer(read)) return false;
  number = static_cast<std::int32_t>(read);
  return number == read;
}

}  // namespace

bool has_data_part(const dxf::Document& document, dxf::ItemIndex record) {
  dxf::GroupReader reader = document.groups(record);
  dxf::Group group;
  while (reader.next(group)) {
    if (group.code == 100 && group.value == "AcDbXrecord") return true;
  }
  return false;
}

bool skip_to_data(dxf::GroupReader& reader, dxf::Group& group, const dxf::Document& document) {
  while (reader.next(group)) {
    if (group.code != 100 || group.value != "AcDbXrecord") continue;
    if (!reader.next(group)) return false;
    const bool flag = group.code == 280 && document.at_least(first_version_with_flag);
    return !flag || reader.next(group);
  }
  return false;
}

bool read_value(dxf::GroupReader& reader, dxf::Group& group, bool& more, ODType type,
                const dxf::TextCodec& codec, ODValue& value) {
  bool read = false;
  switch (type) {
    case ODType::Integer:
      read = read_integer(group, value.emplace<std::int32_t>());
      break;
    case ODType::Real:
      read = group.code == real_code && group.read_real(value.emplace<double>());
      break;
    case ODType::Character: {
      auto* const reused = std::get_if<std::wstring>(&value);
      std::wstring& text = reused != nullptr ? *reused : value.emplace<std::wstring>();
      read = (group.code == text_piece_code || group.code == text_code) &&
             read_text(reader, group, more, codec, text);
      break;
    }
    case ODType::Point:
      read = read_point(reader, group, more, value.emplace<Point3>());
      break;
    case ODType::Unknown:
      break;
  }
  if (read) more = reader.next(group);
  return read;
}

void write_value(dxf::GroupWriter& writer, const ODValueView& value) {
  struct Write {
    dxf::GroupWriter& writer;
    void operator()(std::monostate) const {}
    void operator()(std::int32_t number) const { writer.integer(integer_code, number); }
    void operator()(double number) const { writer.real(real_code, number); }
    void operator()(std::wstring_view text) const {
      writer.long_text(text_piece_code, text_code, text);
    }
    void operator()(const Point3& point) const { writer.point(point_code, point); }
  };
  std::visit(Write{writer}, value);
}

std::optional<ODTableDef> read_definition(const dxf::Document& document, dxf::ItemIndex record,
                                          std::wstring_view key) {
  dxf::GroupReader reader = document.groups(record);
  dxf::Group group;
  if (!skip_to_data(reader, group, document)) return std::nullopt;
  if (group.code != version_code || group.integer() != format_version) return std::nullopt;

  ODTableDef definition{std::wstring(key), {}};
  bool more = reader.next(group);
  if (more && group.code == table_code) {
    document.codec().decode(group.value, definition.name);
    more = reader.next(group);
  }
  while (more) {
    ODColumnDef column;
    if (group.code != column_code) return std::nullopt;
    document.codec().decode(group.value, column.name);
    if (!reader.next(group) || group.code != type_code) return std::nullopt;
    const std::int64_t type = group.integer();
    if (type < 1 || type > 4 || !reader.next(group)) return std::nullopt;
    column.type = static_cast<ODType>(type);
    if (!read_value(reader, group, more, column.type, document.codec(), column.default_value)) {
      return std::nullopt;
    }
    definition.columns.push_back(std::move(column));
  }
  return definition;
}

void write_definition(dxf::GroupWriter& writer, const ODTableDef& definition) {
  writer.integer(version_code, format_version);
  writer.text(table_code, definition.name);
  for (const ODColumnDef& column : definition.columns) {
    writer.text(column_code, column.name);
    writer.integer(type_code, static_cast<int>(column.type));
    write_value(writer, view_of(column.default_value));
  }
}

}  // namespace korvel::od_format
