// Small drawings for tests, written once as lines "code value" and framed as any DXF file may be,
// and what differs between two of them.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/standalone/drawing.h"
#include "host/standalone/dxf/number_text.h"
#include "host/standalone/standalone_store.h"

namespace korvel::test {

struct Form {
  dxf::Framing framing = dxf::Framing::Ascii;
  const char* line_end = "\n";
};

inline std::string framed(std::string_view lines, Form form = {}) {
  std::string bytes;
  const bool ascii = form.framing == dxf::Framing::Ascii;
  if (!ascii) bytes = dxf::binary_sentinel;
  const auto append_little_endian = [&bytes](std::uint64_t number, int size) {
    for (int i = 0; i < size; ++i)
      bytes += static_cast<char>(number >> 8 * i & 0xFF);
  };
  while (!lines.empty()) {
    const std::string line(lines.substr(0, lines.find('\n')));
    lines.remove_prefix(std::min(lines.size(), line.size() + 1));
    const std::string code = line.substr(0, line.find(' '));
    const std::string value = line.substr(std::min(line.size(), code.size() + 1));
    if (ascii) {
      bytes.append(code.size() < 3 ? 3 - code.size() : 0, ' ');
      bytes += code + form.line_end + value + form.line_end;
      continue;
    }
    const int number = std::atoi(code.c_str());
    const bool one_byte = form.framing == dxf::Framing::BinaryOneByte;
    if (one_byte && number >= 255) bytes += '\xFF';
    append_little_endian(static_cast<std::uint64_t>(number), one_byte && number < 255 ? 1 : 2);
    const auto integer = static_cast<std::uint64_t>(std::atoll(value.c_str()));
    switch (dxf::value_kind(number)) {
      case dxf::ValueKind::Boolean:
        append_little_endian(integer, 1);
        break;
      case dxf::ValueKind::Int16:
        append_little_endian(integer, 2);
        break;
      case dxf::ValueKind::Int32:
        append_little_endian(integer, 4);
        break;
      case dxf::ValueKind::Int64:
        append_little_endian(integer, 8);
        break;
      case dxf::ValueKind::Real: {
        const double real = std::strtod(value.c_str(), nullptr);
        std::uint64_t bits = 0;
        std::memcpy(&bits, &real, sizeof bits);
        append_little_endian(bits, 8);
        break;
      }
      case dxf::ValueKind::Chunk:
        bytes += static_cast<char>(value.size());
        bytes += value;
        break;
      case dxf::ValueKind::Text:
        bytes += value;
        bytes += '\0';
        break;
    }
  }
  return bytes;
}

// Model space holds the LINE 20, the POINT 21 on Roads, the LWPOLYLINE 22 with an extension
// dictionary 30 of one entry, the CIRCLE 23 on the locked layer, the INSERT 24 with the ATTRIB 25;
// the block B holds the LINE 1A. The root dictionary is C. `objects` are added to OBJECTS.
inline std::string sample_lines(const std::string& version, const std::string& objects = {}) {
  const std::string flag = version >= "AC1015" ? "280 1\n" : "";
  return "0 SECTION\n2 HEADER\n9 $ACADVER\n1 " + version +
         "\n9 $DWGCODEPAGE\n3 ANSI_1252\n9 $LUPREC\n70 4\n9 $CLAYER\n8 0\n9 $LTSCALE\n40 1.0\n"
         "9 $INSBASE\n10 0.0\n20 0.0\n30 0.0\n9 $HANDSEED\n5 100\n0 ENDSEC\n"
         "0 SECTION\n2 TABLES\n"
         "0 TABLE\n2 LAYER\n5 2\n100 AcDbSymbolTable\n70 1\n"
         "0 LAYER\n5 10\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 0\n70 0\n62 7\n"
         "6 CONTINUOUS\n0 LAYER\n5 11\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n"
         "2 Roads\n70 0\n62 3\n6 CONTINUOUS\n0 LAYER\n5 12\n100 AcDbSymbolTableRecord\n"
         "100 AcDbLayerTableRecord\n2 Locked\n70 4\n62 -1\n6 CONTINUOUS\n0 ENDTAB\n"
         "0 TABLE\n2 BLOCK_RECORD\n5 1\n100 AcDbSymbolTable\n70 2\n"
         "0 BLOCK_RECORD\n5 15\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n"
         "2 *Model_Space\n"
         "0 BLOCK_RECORD\n5 16\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 B\n"
         "0 ENDTAB\n0 ENDSEC\n0 SECTION\n2 BLOCKS\n"
         "0 BLOCK\n5 18\n8 0\n2 B\n70 0\n10 0.0\n20 0.0\n30 0.0\n3 B\n"
         "0 LINE\n5 1A\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0.0\n20 0.0\n11 1.0\n21 1.0\n"
         "0 ENDBLK\n5 19\n8 0\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n"
         "0 LINE\n5 20\n330 15\n100 AcDbEntity\n8 0\n100 AcDbLine\n"
         "10 1.5\n20 0.0\n30 0.0\n11 10.25\n21 7.0\n31 0.0\n"
         "0 POINT\n5 21\n330 15\n100 AcDbEntity\n8 ROADS\n100 AcDbPoint\n10 3.0\n20 4.0\n30 0.0\n"
         "0 LWPOLYLINE\n5 22\n102 {ACAD_XDICTIONARY\n360 30\n102 }\n330 15\n100 AcDbEntity\n8 0\n"
         "100 AcDbPolyline\n90 2\n70 1\n10 0.0\n20 0.0\n42 1.0\n10 5.0\n20 0.0\n"
         "0 CIRCLE\n5 23\n330 15\n100 AcDbEntity\n8 Locked\n100 AcDbCircle\n"
         "10 0.0\n20 0.0\n30 0.0\n40 2.0\n"
         "0 INSERT\n5 24\n330 15\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n66 1\n2 B\n"
         "10 1.0\n20 1.0\n30 0.0\n0 ATTRIB\n5 25\n330 24\n100 AcDbEntity\n8 0\n100 AcDbText\n"
         "10 1.0\n20 1.0\n40 2.5\n1 Main St\n100 AcDbAttribute\n2 NAME\n70 0\n"
         "0 SEQEND\n5 26\n330 24\n100 AcDbEntity\n8 0\n0 ENDSEC\n"
         "0 SECTION\n2 OBJECTS\n"
         "0 DICTIONARY\n5 C\n330 0\n100 AcDbDictionary\n281 1\n3 ACAD_GROUP\n350 D\n"
         "0 DICTIONARY\n5 D\n330 C\n100 AcDbDictionary\n281 1\n"
         "0 DICTIONARY\n5 30\n330 22\n100 AcDbDictionary\n280 1\n281 1\n3 OTHER\n360 31\n"
         "0 XRECORD\n5 31\n330 30\n100 AcDbXrecord\n" +
         flag + "1 kept\n" + objects + "0 ENDSEC\n0 EOF\n";
}

inline std::string sample(const std::string& version, Form form = {},
                          const std::string& objects = {}) {
  return framed(sample_lines(version, objects), form);
}

// `text` with the first `from` replaced, to make variants of a sample.
inline std::string replaced(std::string text, std::string_view from, std::string_view to) {
  return text.replace(text.find(from), from.size(), to);
}

inline std::unique_ptr<Drawing> read(std::string bytes) {
  Result<std::unique_ptr<Drawing>> drawing = Drawing::read(std::move(bytes), "test.dxf");
  return drawing ? std::move(*drawing) : nullptr;
}

// Which objects of the second file are changed (~), new (+) or gone (-), by handle, those without
// one by type and number, in ASCII order; the handle seed counts as an object of its own. "same"
// for equal bytes.
inline std::string difference(const std::string& before, const std::string& after) {
  if (before == after) return "same";
  struct Pieces {
    std::map<std::string, std::string> by_name;
    std::vector<std::string> order;
  };
  const auto cut = [](const std::string& bytes) {
    Pieces pieces;
    std::map<std::string, int> unnamed;
    const auto keep = [&](const dxf::Document& document, dxf::ItemIndex index,
                          const dxf::ItemFacts& /*facts*/) {
      std::string name;
      std::string piece(document.bytes(index));
      const dxf::Item& item = document.item(index);
      if (item.section == dxf::Section::Header && document.type_of(index) == "SECTION") {
        name = "HEADER";
        if (const auto seed = document.variable("$HANDSEED")) {
          pieces.by_name["$HANDSEED"] = seed->value;
          piece.replace(piece.find("$HANDSEED"), seed->end - piece.find("$HANDSEED"), "");
        }
      } else if (item.handle != 0) {
        dxf::append_handle(name, item.handle);
      } else {
        name = std::string(document.type_of(index));
        name += "#" + std::to_string(++unnamed[name]);
      }
      pieces.by_name.emplace(name, piece);
      pieces.order.push_back(name);
    };
    if (!dxf::Document::read(bytes, "test.dxf", keep)) pieces.order = {"unreadable"};
    return pieces;
  };
  const Pieces old_pieces = cut(before);
  const Pieces new_pieces = cut(after);
  std::set<std::string> parts;
  for (const auto& [name, bytes] : old_pieces.by_name) {
    const auto now = new_pieces.by_name.find(name);
    if (now == new_pieces.by_name.end()) {
      parts.insert("-" + name);
    } else if (now->second != bytes) {
      parts.insert("~" + name);
    }
  }
  for (const auto& [name, bytes] : new_pieces.by_name) {
    if (!old_pieces.by_name.contains(name)) parts.insert("+" + name);
  }
  const auto common = [](const Pieces& pieces, const Pieces& other) {
    std::vector<std::string> names = pieces.order;
    std::erase_if(names, [&](const std::string& name) { return !other.by_name.contains(name); });
    return names;
  };
  if (common(old_pieces, new_pieces) != common(new_pieces, old_pieces)) parts.insert("reordered");
  if (parts.empty()) return "bytes between objects";
  std::string text;
  for (const std::string& part : parts)
    text += (text.empty() ? "" : " ") + part;
  return text;
}

inline std::vector<ODRecord> records_of(ODStore& store, EntityId id) {
  std::vector<ODRecord> records;
  const std::unique_ptr<RecordIterator> iterator = store.records();
  for (iterator->open(id, OpenMode::Read); !iterator->done(); iterator->next())
    iterator->read(records.emplace_back());
  return records;
}

inline std::vector<ODRecord> records_of(Drawing& drawing, std::uint64_t handle) {
  StandaloneStore store(drawing);
  const std::optional<EntityId> id = drawing.by_handle(handle);
  return id ? records_of(store, *id) : std::vector<ODRecord>{};
}

inline bool attach(Drawing& drawing, std::uint64_t handle, const ODRecord& record) {
  StandaloneStore store(drawing);
  const std::optional<EntityId> id = drawing.by_handle(handle);
  return id && store.attach(*id, record);
}

// The entity's record number `index` goes.
inline bool detach(Drawing& drawing, std::uint64_t handle, int index) {
  StandaloneStore store(drawing);
  const std::unique_ptr<RecordIterator> iterator = store.records();
  const std::optional<EntityId> id = drawing.by_handle(handle);
  if (!id || !iterator->open(*id, OpenMode::Write)) return false;
  for (int i = 0; i < index; ++i)
    iterator->next();
  return iterator->remove();
}

}  // namespace korvel::test
