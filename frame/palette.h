// A dialog that stays open beside the drawing.
#pragma once

#include <cassert>

#include "frame/dialog.h"
#include "frame/session.h"

namespace korvel {

// Between two turns of the user's it touches nothing of the drawing, which may be another one by
// then; whatever the host delivers to it (a change, a button, an activation), it delivers in a
// turn.
class Palette : public Dialog {
 public:
  class Turn {
   public:
    // Both must outlive the turn. Turns nest.
    Turn(Palette& palette, Session& session) : palette_(palette), former_(palette.session_) {
      palette_.session_ = &session;
    }
    ~Turn() { palette_.session_ = former_; }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    Palette& palette_;
    Session* former_;
  };

  // In a turn: the palette comes before the user's eyes, or the drawing or its selection may have
  // changed under it.
  virtual void shown() {}

  // Not in a turn: the drawing closes, and what is shown of it is let go.
  virtual void drawing_closes() {}

 protected:
  using Dialog::Dialog;

  [[nodiscard]] Session& session() const {
    assert(session_ != nullptr && "a palette acts in a turn only");
    return *session_;
  }

 private:
  Session* session_ = nullptr;
};

}  // namespace korvel
