// The grounds that say what is selected, in every list and grid.
#pragma once

#include "platform/desktop/types.h"

// The selected day and the selected row; a row's is lighter while the keyboard is elsewhere.
constexpr COLORREF kSelection = RGB(224, 219, 239);
constexpr COLORREF kIdleSelection = RGB(240, 237, 247);
