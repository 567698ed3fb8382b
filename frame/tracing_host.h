// A host and a store that write down every call that goes through them, for finding out what a
// command asked of its host.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

// Takes one line at a time, without its line end; the view dies with the call. Must not throw.
using TraceSink = std::function<void(std::wstring_view line)>;

// A line is the operation, its arguments and its result: `attach(#5, "ROADS"[3, "Main St"]) =
// true`; # begins the identifier of an entity or a layer. Long texts and lists are cut and say how
// long they are; control characters stand as \x0A. A call without a result is written when it
// begins, one with a result when it ends. Calls of iterators and attached drawings are indented.
//
// What is passed in must outlive the result, and a store its iterators and attached drawings.
[[nodiscard]] std::unique_ptr<ODStore> tracing_store(ODStore& target, TraceSink sink);
[[nodiscard]] std::unique_ptr<DrawingHost> tracing_host(DrawingHost& target, TraceSink sink);

}  // namespace korvel
