#include "platform/desktop/qt/control_text.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFile>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

#include "platform/desktop/qt/storable_text.h"
#include "platform/desktop/qt/window_table.h"

namespace {

// What was set, beside the text it was shown as: as long as that still stands the bytes are those that were
// set. (A text may hold line ends or more characters than an edit field keeps.)
constexpr const char* kSetBytes = "daybrixSetBytes";
constexpr const char* kShownText = "daybrixShownText";
constexpr const char* kOwnName = "daybrixOwnName";
constexpr const char* kLimit = "daybrixLimit";

QString ShownText(const QWidget& control) {
  if (const auto* line = qobject_cast<const QLineEdit*>(&control)) return line->text();
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(&control)) return text->toPlainText();
  if (const auto* box = qobject_cast<const QComboBox*>(&control)) return box->currentText();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) return button->text();
  if (const auto* label = qobject_cast<const QLabel*>(&control)) return label->text();
  return {};
}

// What has a name of its own, such as a button that shows a date, would keep its text from who cannot see it.
void SayAfterName(QWidget& control, const QString& text) {
  if (!control.property(kOwnName).isValid()) control.setProperty(kOwnName, control.accessibleName());
  const QString name = control.property(kOwnName).toString();
  if (!name.isEmpty()) control.setAccessibleName(text.isEmpty() ? name : name + QStringLiteral(": ") + text);
}

void Show(QWidget& control, const QString& text) {
  if (auto* line = qobject_cast<QLineEdit*>(&control)) {
    line->setText(OnOneLine(text));
  } else if (auto* edit = qobject_cast<QPlainTextEdit*>(&control)) {
    edit->setPlainText(text);
  } else if (auto* box = qobject_cast<QComboBox*>(&control)) {
    box->setEditText(OnOneLine(text));
  } else if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
    button->setText(text);
    SayAfterName(control, text);
  } else if (auto* label = qobject_cast<QLabel*>(&control)) {
    // A carriage return beside the line end would be drawn as a blank.
    label->setText(QString(text).remove(u'\r'));
    SayAfterName(control, label->text());
  }
}

// The bytes are remembered before the text is shown: showing it already asks for it.
void SetBytes(QWidget& control, const QByteArray& bytes, const QString& text) {
  control.setProperty(kSetBytes, bytes);
  control.setProperty(kShownText, QVariant());
  Show(control, text);
  control.setProperty(kShownText, ShownText(control));
}

// False when the user has changed what was set.
bool IsUntouched(const QWidget& control) {
  const QVariant shown = control.property(kShownText);
  return shown.isValid() && shown.toString() == ShownText(control);
}

std::string SetBytesOf(const QWidget& control) {
  return control.property(kSetBytes).toByteArray().toStdString();
}

// Bytes that a part of a text takes in the files, where each line end takes two.
qsizetype StoredSize(const QString& text) {
  return text.size() + text.count(u'\n');
}

}  // namespace

void SetControlText(QWidget& control, const char* text) {
  SetBytes(control, QByteArray(text), TextFromCodePage(text));
}

std::string ControlText(const QWidget& control) {
  if (IsUntouched(control)) return SetBytesOf(control);
  QString text = ShownText(control);
  if (qobject_cast<const QPlainTextEdit*>(&control) != nullptr) {
    text.replace(u'\n', QStringLiteral("\r\n"));
  }
  return CodePageFromText(text);
}

void SetControlPath(QWidget& control, const std::string& path) {
  QString text = QFile::decodeName(path.c_str());
  if (qobject_cast<QLabel*>(&control) != nullptr) {
    text = control.fontMetrics().elidedText(text, Qt::ElideMiddle, control.width());
  }
  SetBytes(control, QByteArray::fromStdString(path), text);
}

std::string ControlPath(const QWidget& control) {
  return IsUntouched(control) ? SetBytesOf(control) : QFile::encodeName(ShownText(control)).toStdString();
}

void LimitControlText(QWidget& control, int bytes) {
  if (auto* line = qobject_cast<QLineEdit*>(&control)) {
    line->setMaxLength(bytes);
  } else if (auto* box = qobject_cast<QComboBox*>(&control); box != nullptr && box->isEditable()) {
    box->lineEdit()->setMaxLength(bytes);
  } else {
    control.setProperty(kLimit, bytes);
  }
}

void TrimTextEdit(QPlainTextEdit& edit, int position, int added) {
  const QString whole = edit.toPlainText();
  const QVariant limit = edit.property(kLimit);
  // A text set by the program is not trimmed, only what the user adds.
  if (IsUntouched(edit)) return;
  const int end = static_cast<int>(std::min<qsizetype>(position + added, whole.size()));
  if (position >= end) return;
  const QString part = whole.mid(position, end - position);
  qsizetype room =
      limit.isValid() ? limit.toInt() - (StoredSize(whole) - StoredSize(part)) : StoredSize(part);
  QString lacking;
  QString kept;
  for (const QChar character : StorablePart(part, lacking)) {
    room -= StoredSize(character);
    if (room < 0) break;
    kept += character;
  }
  if (kept == part) return;
  QTextCursor cursor(edit.document());
  cursor.joinPreviousEditBlock();
  cursor.setPosition(position);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  cursor.insertText(kept);
  cursor.endEditBlock();
  TellLacking(edit, lacking);
}
