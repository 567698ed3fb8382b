#include "host/arx/documents.h"

#include "host/arx/palette_set.h"

namespace korvel::arx {

DocumentWatch::DocumentWatch() { acDocManagerPtr()->addReactor(this); }

DocumentWatch::~DocumentWatch() { acDocManagerPtr()->removeReactor(this); }

// Unconfirmed: the name of this notice, and that the document's database is the working one by
// then. Null: there is no document.
void DocumentWatch::documentBecameCurrent(AcApDocument* document) {
  if (document == nullptr) return clear_palettes();
  show_palettes_anew();
}

void DocumentWatch::documentToBeDestroyed(AcApDocument* /*document*/) { clear_palettes(); }

}  // namespace korvel::arx
