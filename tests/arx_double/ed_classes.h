// A double of the CAD host's editor functions, see db_classes.h: selection sets, prompts, messages,
// variables, the progress meter, commands and the document.
//
// What the real ones are known to do, these do: at most 128 selection sets are open at a time, each
// that was not freed is counted; a printed text is cut after 132 characters; a document is unlocked
// as often as it was locked.
#pragma once

#include <cstdint>

#include "tests/arx_double/db_classes.h"

inline constexpr int RTNORM = 5100;
inline constexpr int RTNONE = 5000;
inline constexpr int RTERROR = -5001;
inline constexpr int RTCAN = -5002;
inline constexpr int RTSHORT = 5003;

using ads_real = double;
using ads_point = ads_real[3];
using ads_name = std::int64_t[2];

struct resbuf {
  resbuf* rbnext = nullptr;
  short restype = 0;
  union {
    ads_real rreal;
    short rint;
  } resval{};
};

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

class AcApDocManager {
 public:
  AcApDocument* curDocument();
  Acad::ErrorStatus lockDocument(AcApDocument* document, AcAp::DocLockMode mode = AcAp::kWrite);
  Acad::ErrorStatus unlockDocument(AcApDocument* document);
  Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text,
                                        bool activate = true, bool wrap_up_inactive = false,
                                        bool echo = true);
};
AcApDocManager* acDocManagerPtr();
void acedPostCommand(const ACHAR* text);

namespace korvel::arx_double {

// Selection sets made and not yet freed.
[[nodiscard]] int open_selection_sets();

}  // namespace korvel::arx_double
