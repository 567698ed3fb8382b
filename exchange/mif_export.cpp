// Writing of MIF and MID files, and the menu's export.
#include "exchange/mif_export.h"

#include <array>
#include <filesystem>
#include <string_view>
#include <utility>

#include "exchange/exact_text.h"
#include "exchange/mif_geometry.h"
#include "exchange/mif_rows.h"
#include "exchange/shown_table.h"
#include "exchange/table_exchange.h"
#include "frame/case_mapping.h"
#include "frame/command_frame.h"
#include "frame/file_bytes.h"
#include "frame/session.h"
#include "frame/utf.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view line_end = "\r\n";

// The oldest version that has what the file needs: more vertices came with 450, UTF-8 with 1520.
std::string_view version(const MifLayout& layout, std::size_t most_vertices) {
  constexpr std::size_t most_of_300 = 32'763;
  if (layout.charset.is_utf8()) return "1520";
  return most_vertices > most_of_300 ? "450" : "300";
}

void append_column(const MifColumn& column, const MifCharset& charset, std::string& out) {
  for (const std::wstring& name : column.names) {
    out += "  ";
    charset.append(name, out);
    switch (column.type) {
      case ODType::Integer:
        out += " Integer";
        break;
      case ODType::Real:
      case ODType::Point:
        out += " Float";
        break;
      case ODType::Character:
      case ODType::Unknown:
        out += " Char(" + std::to_string(column.width) + ")";
        break;
    }
    out += line_end;
  }
}

std::string head(const MifLayout& layout, const MifObjects& objects) {
  const Extents bounds = objects.bounds().value_or(Extents{{0, 0, 0}, {1, 1, 0}});
  std::string out = "Version ";
  out.append(version(layout, objects.most_vertices())).append(line_end);
  out.append("Charset \"").append(layout.charset.name()).append("\"").append(line_end);
  out.append("Delimiter \",\"").append(line_end);
  out.append("CoordSys NonEarth Units \"m\" Bounds (");
  append_plain(bounds.min.x, out);
  out += ", ";
  append_plain(bounds.min.y, out);
  out += ") (";
  append_plain(bounds.max.x, out);
  out += ", ";
  append_plain(bounds.max.y, out);
  out.append(")").append(line_end);
  std::size_t columns = 0;
  for (const MifColumn& column : layout.columns)
    columns += column.names.size();
  out.append("Columns ").append(std::to_string(columns)).append(line_end);
  for (const MifColumn& column : layout.columns)
    append_column(column, layout.charset, out);
  out.append("Data").append(line_end).append(line_end);
  return out;
}

// Writes the values of records as lines.
class MidWriter {
 public:
  MidWriter(const MifLayout& layout, MifExport& result) : layout_(layout), result_(result) {}

  void append(const MifRow& row) {
    std::string& out = result_.mid;
    handle_ = row.handle;
    for (const MifColumn& column : layout_.columns) {
      if (&column != &layout_.columns.front()) out += ',';
      append_value(row[column], column);
    }
    out += line_end;
  }

 private:
  void append_value(const ODValueView& value, const MifColumn& column) {
    std::string& out = result_.mid;
    if (const auto* const text = std::get_if<std::wstring_view>(&value)) {
      append_text(*text, column);
    } else if (const auto* const real = std::get_if<double>(&value)) {
      append_plain(*real, out);
    } else if (const auto* const point = std::get_if<Point3>(&value)) {
      append_plain(point->x, out);
      out += ',';
      append_plain(point->y, out);
      out += ',';
      append_plain(point->z, out);
    } else if (std::holds_alternative<std::int32_t>(value)) {
      append_exact(value, out);
    } else {
      out += "\"\"";
    }
  }
  void append_text(std::wstring_view text, const MifColumn& column) {
    const auto place = [&] {
      return format_text(L"%s %s '%s'", handle_, column.names.front(), excerpt(text));
    };
    const bool broken = text.find_first_of(L"\r\n") != std::wstring_view::npos;
    if (broken) result_.broken_lines.add(place);
    std::string& out = result_.mid;
    out += '"';
    std::size_t bytes = 0;
    for (std::size_t at = 0; at < text.size();) {
      const CodePoint read = code_point_at(text, at);
      bytes += layout_.charset.size_of(read.value);
      if (bytes > column.width) {
        result_.cut_texts.add(place);
        break;
      }
      append_letter(text, at, read, out);
      at += read.units;
    }
    out += '"';
  }
  // CR LF is one line break, and so one blank.
  void append_letter(std::wstring_view text, std::size_t at, const CodePoint& read,
                     std::string& out) const {
    switch (read.value) {
      case U'"':
        out += "\"\"";
        break;
      case U'\r':
        if (at + 1 >= text.size() || text[at + 1] != L'\n') out += ' ';
        break;
      case U'\n':
        out += ' ';
        break;
      default:
        layout_.charset.append(text.substr(at, read.units), out);
        break;
    }
  }

  const MifLayout& layout_;
  MifExport& result_;
  std::wstring_view handle_;  // of the row in work
};

bool are_names_accepted(DrawingHost& host, const MifLayout& layout) {
  if (layout.changed_names.empty()) return true;
  std::wstring text;
  for (const std::wstring& name : layout.changed_names)
    text += name + L"\n";
  host.show_text(L"MIF export: changed column names", text, 500, 400);
  return host.ask_yes_no(L"MIF export", L"Continue with the changed column names?",
                         BoxIcon::Question);
}

bool may_overwrite(DrawingHost& host, const fs::path& file) {
  std::error_code code;
  return !fs::exists(file, code) ||
         host.ask_yes_no(text(Message::WarningTitle),
                         format<Message::FileExistsOverwrite>(path_text(file)),
                         BoxIcon::Exclamation);
}

struct FilePair {
  fs::path mif;
  fs::path mid;
};

// The two files, side by side and of one name. None: cancelled.
std::optional<FilePair> choose_files(DrawingHost& host) {
  const auto chosen = host.choose_file_to_save({L"MIF files (*.mif)|*.mif||", L"mif", true});
  if (!chosen) return std::nullopt;
  const std::wstring extension = path_text(chosen->extension());
  const bool is_mif = equal_ignoring_case(extension, L".mif");
  FilePair files{*chosen, *chosen};
  std::error_code ignored;
  if (fs::is_directory(*chosen, ignored)) return files;  // the saving refuses it
  if (!is_mif) files.mif += ".mif";
  files.mid = files.mif;
  files.mid.replace_extension(extension == L".MIF" ? ".MID" : ".mid");
  if (!is_mif && !may_overwrite(host, files.mif)) return std::nullopt;
  if (!may_overwrite(host, files.mid)) return std::nullopt;
  return files;
}

void warn(DrawingHost& host, std::wstring_view what, const Findings& findings) {
  if (findings.count() == 0) return;
  host.print(format_text(L"Warning: %s: %i (%s)\n", what, findings.count(), findings.list()));
}

}  // namespace

MifExport write_mif(ODStore& store, DrawingHost& host, const RecordRows& rows,
                    const MifLayout& layout) {
  MifExport result;
  MifObjects objects;
  MidWriter values(layout, result);
  MifRowReader rows_read(store, host, rows.table);
  ReadWalk walk(host, rows.rows.size());
  std::string data;
  std::string object;
  EntityId owner;
  for (const RecordKey& key : rows.rows) {
    walk.step();
    const std::optional<MifRow> row = rows_read.at(key);
    if (!row) continue;
    if (key.entity != owner) {
      owner = key.entity;
      object.clear();
      objects.append(host.geometry_of(owner), object);
    }
    data += object;
    values.append(*row);
    ++result.rows;
  }
  result.mif = head(layout, objects) + data;
  return result;
}

void export_mif(Session& session, const RecordRows& rows) {
  DrawingHost& host = session.host;
  const std::optional<ODTableDef> table = shown_table(session, rows);
  if (!table) return;
  const MifLayout layout = mif_layout(session.store, host, *table, rows);
  if (!are_names_accepted(host, layout)) return;
  const std::optional<FilePair> files = choose_files(host);
  if (!files) return;

  const MifExport written = write_mif(session.store, host, rows, layout);
  const std::array targets{new_file(files->mif, written.mif), new_file(files->mid, written.mid)};
  if (const auto failed = host.replace_files(targets)) return report_unwritten(host, *failed);
  warn(host, L"texts cut off after 254 bytes", written.cut_texts);
  warn(host, L"texts with blanks instead of line breaks", written.broken_lines);
  report<Message::CompletedOutOf>(host, written.rows, rows.rows.size());
}

}  // namespace korvel
