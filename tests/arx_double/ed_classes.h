// A double of the CAD host's editor functions, see db_classes.h: selection sets, prompts, messages,
// variables, the progress meter, commands, reactors and the document.
//
// What the real ones are known to do, these do: at most 128 selection sets are open at a time, each
// that was not freed is counted; a printed text is cut after 132 characters; a document is unlocked
// as often as it was locked, and outside of commands nothing in it is written while it is not
// locked; a command wants an answer to every prompt. What they are not known to allow, these
// refuse: BREAK on an entity that was not pointed at, and a change of the editor's reactors while
// they are told something.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tests/arx_double/db_classes.h"

inline constexpr int RTNORM = 5100;
inline constexpr int RTNONE = 5000;
inline constexpr int RTERROR = -5001;
inline constexpr int RTCAN = -5002;
inline constexpr int RTSHORT = 5003;
inline constexpr int RTSTR = 5005;
inline constexpr int RTENAME = 5006;
inline constexpr int RT3DPOINT = 5009;
inline constexpr int RTLB = 5016;
inline constexpr int RTLE = 5017;

using ads_real = double;
using ads_point = ads_real[3];
using ads_name = std::int64_t[2];

struct resbuf {
  resbuf* rbnext = nullptr;
  short restype = 0;
  union {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    ACHAR* rstring;
    std::int64_t rlname[2];
  } resval{};
};

// Pairs of a type and its value, up to a type 0. Texts are copied.
resbuf* acutBuildList(int type, ...);
int acutRelRb(resbuf* list);

int acedSSGet(const ACHAR* mode, const void* point1, const void* point2, const resbuf* filter,
              ads_name set);
int acedSSLength(const ads_name set, Adesk::Int32* length);
int acedSSName(const ads_name set, int index, ads_name entity);
int acedSSAdd(const ads_name entity, const ads_name set, ads_name result);
int acedSSFree(const ads_name set);
int acedSSSetFirst(const ads_name pick_set, const ads_name unused);
Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name entity);
Acad::ErrorStatus acdbGetAdsName(ads_name entity, AcDbObjectId id);

int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point);
int acedGetString(int cronly, const ACHAR* prompt, ACHAR* text);
int acedGetInt(const ACHAR* prompt, int* number);
int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point point);
int acutPrintf(const ACHAR* format, ...);
int acedGetVar(const ACHAR* name, resbuf* value);
int acedSetVar(const ACHAR* name, const resbuf* value);
bool acdbUcs2Wcs(const ads_point from, ads_point to, bool is_vector);

int acedSetStatusBarProgressMeter(const ACHAR* label, int least, int most);
int acedSetStatusBarProgressMeterPos(int position);
void acedRestoreStatusBar();
int acedUsrBrk();

class AcApDocument {};

namespace AcAp {
enum DocLockMode { kWrite };
}

// Told of the documents; every notice has an empty default.
class AcApDocManagerReactor {
 public:
  AcApDocManagerReactor() = default;
  AcApDocManagerReactor(const AcApDocManagerReactor&) = delete;
  AcApDocManagerReactor& operator=(const AcApDocManagerReactor&) = delete;
  virtual ~AcApDocManagerReactor() = default;

  virtual void documentBecameCurrent(AcApDocument* /*document*/) {}
  virtual void documentToBeDestroyed(AcApDocument* /*document*/) {}
};

template <class Data>
class AcApDataManager : public AcApDocManagerReactor {
 public:
  Data& docData() { return data_; }

 private:
  Data data_;
};

class AcApDocManager {
 public:
  void addReactor(AcApDocManagerReactor* reactor) { reactors_.push_back(reactor); }
  void removeReactor(AcApDocManagerReactor* reactor) { std::erase(reactors_, reactor); }
  // What the user does with the two documents that there are, over one drawing.
  AcApDocument* other_document();
  void close_document(AcApDocument* document);
  void make_current(AcApDocument* document);

  AcApDocument* curDocument();
  [[nodiscard]] bool isApplicationContext() const;
  Acad::ErrorStatus lockDocument(AcApDocument* document, AcAp::DocLockMode mode = AcAp::kWrite);
  Acad::ErrorStatus unlockDocument(AcApDocument* document);
  Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text,
                                        bool activate = true, bool wrap_up_inactive = false,
                                        bool echo = true);

 private:
  std::vector<AcApDocManagerReactor*> reactors_;
  std::array<AcApDocument, 2> documents_;
  std::size_t current_ = 0;
};
AcApDocManager* acDocManagerPtr();
void acedPostCommand(const ACHAR* text);
int acedCmdS(const resbuf* answers, bool for_future_use = false, AcApDocument* document = nullptr);

class AcEditorReactor {
 public:
  AcEditorReactor() = default;
  AcEditorReactor(const AcEditorReactor&) = delete;
  AcEditorReactor& operator=(const AcEditorReactor&) = delete;
  virtual ~AcEditorReactor() = default;
  virtual void commandEnded(const ACHAR* /*name*/) {}
  virtual void commandCancelled(const ACHAR* /*name*/) {}
  virtual void commandFailed(const ACHAR* /*name*/) {}
};

class AcEditor {
 public:
  void addReactor(AcEditorReactor* reactor);
  void removeReactor(AcEditorReactor* reactor);
};
AcEditor* the_editor();
#define acedEditor the_editor()

namespace korvel::arx_double {

// Selection sets made and not yet freed.
[[nodiscard]] int open_selection_sets();

// Values of lists made and not yet released.
[[nodiscard]] int unreleased_buffers();

// While it lives, what is done is done by a command, for which the host has locked the document, or
// outside of commands, as what a palette's user does.
class RunningIn {
 public:
  enum Context { Command, Application };
  explicit RunningIn(Context context);
  ~RunningIn();
  RunningIn(const RunningIn&) = delete;
  RunningIn& operator=(const RunningIn&) = delete;

 private:
  Context former_;
};

// Whether documents refuse to be locked.
void refuse_locks(bool refuse);

// Reactors that the editor would tell something.
[[nodiscard]] int editor_reactors();

}  // namespace korvel::arx_double
