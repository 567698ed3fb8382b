// Makes a large drawing: make_drawing [--entities N] [--vertices V] [--records R] [--seed S]
// OUT.dxf
#include <charconv>
#include <cstdio>
#include <string>

#include "bench/drawing_maker.h"

namespace {

template <class Number>
bool read(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

int usage() {
  std::fputs("usage: make_drawing [--entities N] [--vertices V] [--records R] [--seed S] OUT.dxf\n",
             stderr);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  korvel::bench::DrawingSize size;
  int at = 1;
  for (; at + 1 < argc; at += 2) {
    const std::string_view option = argv[at];
    const std::string_view value = argv[at + 1];
    const bool taken = (option == "--entities" && read(value, size.entities)) ||
                       (option == "--vertices" && read(value, size.vertices)) ||
                       (option == "--records" && read(value, size.records)) ||
                       (option == "--seed" && read(value, size.seed));
    if (!taken) return usage();
  }
  if (at + 1 != argc || size.vertices < 2 || size.records < 0) return usage();

  std::FILE* const file = std::fopen(argv[at], "wb");
  if (file == nullptr) {
    std::perror(argv[at]);
    return 4;
  }
  bool written = true;
  korvel::bench::make_drawing(size, [&](std::string_view piece) {
    written = written && std::fwrite(piece.data(), 1, piece.size(), file) == piece.size();
  });
  if (std::fclose(file) != 0 || !written) {
    std::perror(argv[at]);
    return 4;
  }
  return 0;
}
