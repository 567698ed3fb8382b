// The dialog of KORVEL_TRANSLATE.
#pragma once

#include <filesystem>

#include "frame/dialog.h"

namespace korvel {

enum class TranslationDirection { ToAliases, ToNames };

// Alias files; an empty path stands for none.
struct TranslationRequest {
  std::filesystem::path tables;
  std::filesystem::path fields;
  std::filesystem::path values;
  TranslationDirection direction = TranslationDirection::ToAliases;
};

class ODTranslate final : public Dialog {
 public:
  ODTranslate();

  // What is asked for as the controls stand, and by the button that closed the dialog.
  [[nodiscard]] TranslationRequest request() const;

 private:
  FileChooser tables_;
  FileChooser fields_;
  FileChooser values_;
};

}  // namespace korvel
