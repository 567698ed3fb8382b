// Being told by the host's editor when its commands end.
#pragma once

#include "frame/editor_reactor.h"

namespace korvel::arx {

// As DrawingHost has them. What a reactor throws is dropped: it must not reach the host.
void add_reactor(EditorReactor& reactor);
void remove_reactor(EditorReactor& reactor);

// The host does not say whether its list of reactors may change while it tells them something, so
// ours leaves it later when the last one above was removed by then. To be called when a command of
// the host has been run, and before the module is unloaded.
void leave_idle_editor();

}  // namespace korvel::arx
