// How object data lie in a drawing file.
//
// The named object dictionary has an entry KORVEL_OBJECT_DATA: a dictionary with one XRECORD a
// table, keyed by the table's name. Its data: 90 format version (1), 2 the table's name in full (a
// key may have lost its letter case), then for each column 300 name, 70 type, and its default: 90
// Integer, 40 Real, 10/20/30 Point, or for Character 3 for all pieces but the last and 1 for the
// last, a piece having at most 250 characters.
//
// An entity's extension dictionary has an entry KORVEL_OD: one XRECORD with the entity's records in
// order, for each 2 its table's name and then the values in column order under the same codes. A
// record that ends early has its columns' defaults for the rest.
//
// In both the data begin behind `100 AcDbXrecord`, from R2000 on behind the cloning flag 280.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/od_table.h"
#include "host/standalone/dxf/document.h"
#include "host/standalone/dxf/group_writer.h"

namespace korvel::od_format {

// Of the drawing's version: earlier ones have no dictionaries.
inline constexpr std::string_view first_version = "AC1012";

inline constexpr std::string_view definitions_key = "KORVEL_OBJECT_DATA";
inline constexpr std::string_view records_key = "KORVEL_OD";

inline constexpr int table_code = 2;
inline constexpr int column_code = 300;
inline constexpr int type_code = 70;
inline constexpr int version_code = 90;
inline constexpr int integer_code = 90;
inline constexpr int real_code = 40;
inline constexpr int point_code = 10;
inline constexpr int text_piece_code = 3;
inline constexpr int text_code = 1;
inline constexpr int format_version = 1;

// False for an XRECORD without the marker behind which its data begin: it can hold none.
[[nodiscard]] bool has_data_part(const dxf::Document& document, dxf::ItemIndex record);

// Stands before the data of an XRECORD: skips its head and returns the first group of the data in
// `group`; false when there are none.
[[nodiscard]] bool skip_to_data(dxf::GroupReader& reader, dxf::Group& group,
                                const dxf::Document& document);

// Reads a value of the type whose first group is `group`, and moves on to the group behind it
// (`more` false: there is none). False when the groups are not such a value.
[[nodiscard]] bool read_value(dxf::GroupReader& reader, dxf::Group& group, bool& more, ODType type,
                              const dxf::TextCodec& codec, ODValue& value);

void write_value(dxf::GroupWriter& writer, const ODValueView& value);

// None when the data are not a definition of this version. `key` names a table whose data do not.
[[nodiscard]] std::optional<ODTableDef> read_definition(const dxf::Document& document,
                                                        dxf::ItemIndex record,
                                                        std::wstring_view key);

void write_definition(dxf::GroupWriter& writer, const ODTableDef& definition);

}  // namespace korvel::od_format
