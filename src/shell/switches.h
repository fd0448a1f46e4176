// What the settings switch on and off for the whole product: sound, animation and the splash screen.
#pragma once

// Reads all three at start: each is on unless the settings say "0".
void LoadSwitches();
// Takes sound and animation from the settings again, as numbers; a missing one stays as it is.
void ReloadSwitches();
// Whether a splash screen is wanted at start.
bool SplashEnabled();
