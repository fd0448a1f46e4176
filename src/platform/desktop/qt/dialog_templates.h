// The dialog templates that are built into a program. A generated source adds them; see
// cmake/dialog_templates.cmake.
#pragma once

class QDialog;

// Fills an empty dialog with a template's controls.
using DialogTemplateSetup = void (*)(QDialog& dialog);

void AddDialogTemplate(int id, DialogTemplateSetup setup);
// Null when there is no such template.
DialogTemplateSetup FindDialogTemplate(int id);
