// Texts of controls, as the bytes that the data files hold.
#pragma once

#include <string>

class QPlainTextEdit;
class QWidget;

// Shows a text in code page 1252. A long one is shown and kept whole, whatever the limit of typing.
void SetControlText(QWidget& control, const char* text);
// The text as bytes, line ends as CR LF; byte for byte what was set as long as the user has not touched it.
std::string ControlText(const QWidget& control);
// The same for what names a file, in the file system's encoding; a label cuts it in the middle where it has
// no room.
void SetControlPath(QWidget& control, const std::string& path);
std::string ControlPath(const QWidget& control);
// At most so many bytes can be typed from now on.
void LimitControlText(QWidget& control, int bytes);
// Takes back, of `added` characters that came in at `position`, what the code page lacks or the limit
// forbids.
void TrimTextEdit(QPlainTextEdit& edit, int position, int added);
