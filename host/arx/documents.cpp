#include "host/arx/documents.h"

#include "host/arx/palette_set.h"

namespace korvel::arx {

AcApDocManager& document_manager() { return *acDocManagerPtr(); }

AcApDocument* current_document() { return document_manager().curDocument(); }

// Unconfirmed: the names of both calls.

DocumentWatch::DocumentWatch() { document_manager().addReactor(this); }

DocumentWatch::~DocumentWatch() { document_manager().removeReactor(this); }

// Unconfirmed: the name of this notice. Whether the document's object data and selection can be
// asked for in it is not known, so that waits until the notice is over. Null: there is no document.
void DocumentWatch::documentBecameCurrent(AcApDocument* document) {
  if (document == nullptr) return clear_palettes();
  show_palettes_anew_later();
}

// The palettes show nothing of any other.
void DocumentWatch::documentToBeDestroyed(AcApDocument* document) {
  if (document == current_document()) clear_palettes();
}

}  // namespace korvel::arx
