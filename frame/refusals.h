// What a host hears of a command's refusals beside what the command prints.
#pragma once

#include <string_view>

namespace korvel {

class Refusals {
 public:
  Refusals() = default;
  Refusals(const Refusals&) = delete;
  Refusals& operator=(const Refusals&) = delete;
  virtual ~Refusals() = default;

  // Prints a message that begins with "Error".
  virtual void print_error(std::wstring_view message) = 0;

  // What the user gave cannot be used, and the command says nothing of it by its rules. The reason
  // is a clause: "no table is chosen". A host may say it apart from what commands print, and need
  // not.
  virtual void note_refused_input(std::wstring_view /*reason*/) {}
};

}  // namespace korvel
