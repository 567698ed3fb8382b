// Any bytes as an alias file of each kind: every line is counted once, what is loaded holds, and
// going back twice adds nothing.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "exchange/alias_files.h"

namespace korvel {
namespace {

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzz_alias_files: %s\n", what);
  std::abort();
}

std::size_t size_of(const Aliases& aliases) { return aliases.size(); }

template <class Inner>
std::size_t size_of(const std::map<std::wstring, Inner, std::less<>>& by_name) {
  std::size_t size = 0;
  for (const auto& [name, inner] : by_name) {
    expect(size_of(inner) > 0, "a name without aliases");
    size += size_of(inner);
  }
  return size;
}

std::size_t size_of(const AliasMaps& maps) {
  return size_of(maps.tables) + size_of(maps.fields) + size_of(maps.table_fields) +
         size_of(maps.values) + size_of(maps.field_values) + size_of(maps.table_field_values);
}

std::size_t lines_of(std::string_view bytes) {
  TextReading reading = read_text(bytes, TextEncoding::Utf16);
  std::size_t lines = 0;
  while (reading.text.next_line())
    ++lines;
  return lines;
}

void load(std::string_view bytes, AliasFile kind) {
  AliasMaps maps;
  TextReading reading = read_text(bytes, TextEncoding::Utf16);
  const AliasLoad load = load_aliases(reading, kind, maps);
  expect(load.loaded + load.bad_lines.size() == lines_of(bytes),
         "a line that is not accounted for");
  expect(!load.error || load.loaded == 0, "an error, and lines nevertheless");
  expect(size_of(maps) <= load.loaded, "more aliases than lines");
  expect((size_of(maps) == 0) == (load.loaded == 0), "a good line that added nothing");
  const AliasMaps back = inverted(maps);
  expect(size_of(back) <= size_of(maps), "going back made more of them");
  expect(size_of(inverted(back)) == size_of(back), "what leads back is not one to one");
  expect(duplicate_aliases(back.tables).empty(), "a table comes back under two names");
}

}  // namespace
}  // namespace korvel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  korvel::load(bytes, korvel::AliasFile::Tables);
  korvel::load(bytes, korvel::AliasFile::Fields);
  korvel::load(bytes, korvel::AliasFile::Values);
  return 0;
}
