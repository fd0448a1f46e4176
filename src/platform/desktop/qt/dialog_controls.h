// The controls of a dialog: gives each that has a number its handle, reports what happens in it to the
// dialog, and keeps texts within what the data files can hold.
#pragma once

class QDialog;

// Call once, when the template's controls exist.
void BindControls(QDialog& dialog);
