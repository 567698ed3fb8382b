// What a running command may touch.
#pragma once

#include "frame/drawing_host.h"
#include "frame/od_store.h"
#include "frame/palette_set.h"
#include "frame/remembered_choices.h"

namespace korvel {

// Made for one run of one command; of it only the choices and the palettes live on, in their owner.
struct Session {
  ODStore& store;
  DrawingHost& host;
  RememberedChoices& choices;
  Palettes& palettes;
};

}  // namespace korvel
