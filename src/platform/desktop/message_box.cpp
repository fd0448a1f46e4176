#include "platform/desktop/message_box.h"

#include <QMessageBox>
#include <QPushButton>

#include "platform/desktop/messages.h"
#include "platform/desktop/qt/dialog_owner.h"
#include "platform/desktop/qt/font_handle.h"

int MessageBox(HWND owner, const std::string& text, const std::string& caption, UINT type) {
  UseDialogFont();
  QMessageBox box(ReadyOwner(owner));
  TrimDialogFrame(box);
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(text));
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
