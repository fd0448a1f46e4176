// Keeps what users type and paste in dialogs to the characters that the data files can hold, and tells them
// of the others by a tip at the field.
#pragma once

class QLineEdit;
class QString;
class QWidget;

// From now on the edit takes the rest of a text that has characters which the code page lacks. Tabs and line
// ends, for which it has no room, become blanks.
void KeepStorable(QLineEdit& edit);

// `text` without the characters that the code page lacks; each of these is added to `lacking` once.
QString StorablePart(const QString& text, QString& lacking);
// A text as a field of one line shows it: a blank for each tab and each line end.
QString OnOneLine(const QString& text);

// Names characters that were left out, in a tip at the text cursor of an edit. Nothing for none.
void TellLacking(QWidget& edit, const QString& lacking);
