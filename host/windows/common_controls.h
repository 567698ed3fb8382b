// The headers of Windows, in the one order in which they can be included.
#pragma once

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on
