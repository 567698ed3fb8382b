// What a running command may touch.
#pragma once

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

// Made for one run of one command; nothing of it is kept between runs.
struct Session {
  ODStore& store;
  DrawingHost& host;
};

}  // namespace korvel
