// Any bytes as a mapping file: every line is empty, a mapping or a fault, and what is kept names a
// table and a column that are there.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include "attributes/attribute_mapping.h"
#include "host/standalone/drawing.h"
#include "host/standalone/standalone_store.h"

namespace korvel {
namespace {

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzz_attribute_mapping: %s\n", what);
  std::abort();
}

const ODStore& store() {
  static const std::unique_ptr<Drawing> drawing = Drawing::blank();
  static StandaloneStore store(*drawing);
  static const bool is_defined =
      store.define_table({L"T", {{L"N", ODType::Integer, 0}, {L"P", ODType::Point, Point3{}}}}) ==
      TableChange::Done;
  expect(is_defined, "no table to map to");
  return store;
}

void read_mapping(std::string_view bytes) {
  TextReading text = read_text(bytes, TextEncoding::Ansi);
  std::size_t lines = 0;
  for (TextReader counted = text.text; counted.next_line();)
    ++lines;
  const MappingReading reading = read_attribute_mapping(text.text, store());
  std::size_t kept = 0;
  for (const auto& [block, attributes] : reading.mapping) {
    expect(!attributes.empty(), "a block without mappings");
    for (const MappedAttribute& attribute : attributes) {
      const std::optional<ODTableDef> table = store().table(attribute.table);
      expect(table && table->column(attribute.column), "a column that is not there");
      ++kept;
    }
  }
  std::size_t faults = 0;
  for (std::wstring_view rest = reading.messages; !rest.empty(); ++faults) {
    expect(rest.starts_with(L"Error: ") && rest.find(L'\n') != rest.npos, "half a message");
    rest.remove_prefix(rest.find(L'\n') + 1);
  }
  expect(kept == reading.count, "another number than there are");
  expect(kept + faults <= lines, "more mappings and faults than lines");
  expect(!reading.failed || faults > 0, "a failure that nobody hears of");
}

}  // namespace
}  // namespace korvel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  korvel::read_mapping({reinterpret_cast<const char*>(data), size});
  return 0;
}
