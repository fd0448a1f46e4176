// The edit of several lines that dialog forms use where the user may type: name it there as the class of a
// QPlainTextEdit.
#pragma once

#include <QMimeData>
#include <QPlainTextEdit>

class TextEdit : public QPlainTextEdit {
 public:
  using QPlainTextEdit::QPlainTextEdit;

 protected:
  // Qt's own looks at the first form of what is pasted, and crashes where there is none: an empty clipboard,
  // or one whose owner has ended.
  void insertFromMimeData(const QMimeData* source) override {
    const QString text = source != nullptr && !isReadOnly() ? source->text() : QString();
    if (!text.isEmpty()) insertPlainText(text);
  }
};
