// The built-in pictures and dialog templates.
#pragma once

// Makes them known to the desktop layer. Call it once, after StartDesktop.
void RegisterResources();
