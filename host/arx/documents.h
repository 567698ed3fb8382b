// The host's documents: what belongs to each of them, and what is to be done when they come and go.
#pragma once

#include <optional>

#include "host/arx/sdk.h"

namespace korvel::arx {

// Unconfirmed: the name by which the manager of the documents is reached.
[[nodiscard]] AcApDocManager& document_manager();

// Null: there is none.
[[nodiscard]] AcApDocument* current_document();

// What the module keeps for one document: nothing yet. No command remembers anything of a drawing.
class CDocData {};

// Told when another document becomes the current one and when one is closed, for as long as it
// lives: what palettes show of a drawing must not outlive it.
class DocumentWatch final : public AcApDocManagerReactor {
 public:
  DocumentWatch();
  ~DocumentWatch() override;
  DocumentWatch(const DocumentWatch&) = delete;
  DocumentWatch& operator=(const DocumentWatch&) = delete;

  void documentBecameCurrent(AcApDocument* document) override;
  void documentToBeDestroyed(AcApDocument* document) override;
};

}  // namespace korvel::arx
