#include "host/console/output.h"

#include <cstdio>
#include <string>

#include "frame/utf.h"

namespace korvel {

void write_output(std::wstring_view text) {
  const std::string bytes = to_utf8(text);
  (void)std::fwrite(bytes.data(), 1, bytes.size(), stdout);  // judged when the program ends
}

void flush_output() { (void)std::fflush(stdout); }

void complain(std::string_view sentence) {
  flush_output();
  const std::string line = "korvel: " + std::string(sentence) + "\n";
  (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace korvel
