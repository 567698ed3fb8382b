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
#else
#include <MapArxApi.h>
#include <aced.h>
#include <acutmem.h>
#include <adscodes.h>
#include <arxHeaders.h>
#include <dbdynblk.h>
#include <dbhatch.h>
#include <dbmain.h>
#include <dbmline.h>
#include <dbspline.h>
#endif
