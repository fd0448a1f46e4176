#include "platform/desktop/message_box.h"

#include <QMessageBox>
#include <QPushButton>

#include "platform/desktop/messages.h"
#include "platform/desktop/qt/dialog_owner.h"
#include "platform/desktop/qt/font_handle.h"

namespace {

// A long path has no place to break a line at, and would be cut off at the edge of the screen.
QString Breakable(QString text) {
  constexpr qsizetype kLongestRun = 100;
  constexpr QChar kBreakHere(0x200B);
  qsizetype run = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    run = text[i].isSpace() ? 0 : run + 1;
    if (run <= kLongestRun || text[i].isLowSurrogate()) continue;
    text.insert(i++, kBreakHere);
    run = 1;
  }
  return text;
}

}  // namespace

int MessageBox(HWND owner, const std::string& text, const std::string& caption, UINT type) {
  UseDialogFont();
  QMessageBox box(ReadyOwner(owner));
  TrimDialogFrame(box);
  box.setTextFormat(Qt::PlainText);
  box.setText(Breakable(QString::fromStdString(text)));
  box.setWindowTitle(QString::fromStdString(caption));
  box.setIcon(type & MB_ICONQUESTION ? QMessageBox::Question : QMessageBox::Information);
  const bool question = type & MB_YESNO;
  box.setStandardButtons(question ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
  if (question) {
    box.setDefaultButton(QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
  }
  const int answer = box.exec();
  ReturnToOwner(owner);
  if (!question) return IDOK;
  return answer == QMessageBox::Yes ? IDYES : IDNO;
}
