// The classes of the CAD host that the binding uses: those of the host's development kit, or in our
// own checks a double of them.
#pragma once

#ifdef KORVEL_ARX_DOUBLE
#include "tests/arx_double/compound_classes.h"
#include "tests/arx_double/db_classes.h"
#include "tests/arx_double/dictionary_classes.h"
#include "tests/arx_double/ed_classes.h"
#include "tests/arx_double/entity_classes.h"
#include "tests/arx_double/map_classes.h"
#include "tests/arx_double/rx_classes.h"
#include "tests/arx_double/ui_classes.h"
#else
// Unconfirmed: the names of the headers. The kit's own want those of MFC in front of them.
// clang-format off
#include <afxwin.h>
#include <afxext.h>
#include <afxcmn.h>
#include <arxHeaders.h>
#include <AcExtensionModule.h>
#include <acedCmdNF.h>
#include <acui.h>
#include <adui.h>
#include <aduiPaletteSet.h>
#include <acutmem.h>
#include <adscodes.h>
#include <dbdynblk.h>
#include <dbhatch.h>
#include <dbmline.h>
#include <dbspline.h>
#include <MapArxApi.h>
// clang-format on
#endif
