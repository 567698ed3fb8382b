// What an entity's extension dictionary holds, taken out of the drawing.
#pragma once

#include <memory>
#include <string>

namespace korvel {

// A copy of an object of the drawing, with everything that the object owns. Only the host that made
// it knows what is in it.
class ObjectCopy {
 public:
  ObjectCopy() = default;
  ObjectCopy(const ObjectCopy&) = delete;
  ObjectCopy& operator=(const ObjectCopy&) = delete;
  virtual ~ObjectCopy() = default;
};

struct ExtensionEntry {
  std::wstring name;
  std::shared_ptr<const ObjectCopy> object;
};

}  // namespace korvel
