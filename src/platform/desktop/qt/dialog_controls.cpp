#include "platform/desktop/qt/dialog_controls.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>
#include <QValidator>
#include <algorithm>
#include <memory>

#include "platform/desktop/qt/control_text.h"
#include "platform/desktop/qt/dialog_widget.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/system/code_page.h"

namespace {

bool InCodePage(const QString& text) {
  const QList<uint> characters = text.toUcs4();
  return std::all_of(characters.begin(), characters.end(),
                     [](uint character) { return platform::InCodePage(static_cast<char32_t>(character)); });
}

// Refuses characters that the data files cannot hold.
class CodePageValidator : public QValidator {
 public:
  using QValidator::QValidator;
  State validate(QString& text, int&) const override { return InCodePage(text) ? Acceptable : Invalid; }
};

void Report(const QWidget* control, unsigned code) {
  const WindowEntry* entry = FindWindowEntry(HandleOf(control));
  if (entry == nullptr) return;
  const HWND dialog = HandleAround(control->parentWidget());
  SendMessage(dialog, WM_COMMAND, MakeWParam(static_cast<unsigned>(entry->controlId), code),
              reinterpret_cast<LPARAM>(entry->handle));
}

void BindLineEdit(QLineEdit* edit, QWidget* control, unsigned code) {
  edit->setValidator(new CodePageValidator(edit));
  QObject::connect(edit, &QLineEdit::textChanged, control, [control, code] { Report(control, code); });
}

void BindTextEdit(QPlainTextEdit* edit) {
  const auto trim = [edit](int position, int, int added) { TrimTextEdit(*edit, position, added); };
  // Queued: trimming while the document still reports a change would confuse it.
  QObject::connect(edit->document(), &QTextDocument::contentsChange, edit, trim, Qt::QueuedConnection);
  QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [edit] { Report(edit, EN_CHANGE); });
}

void BindComboBox(QComboBox* box) {
  if (box->isEditable()) {
    box->setCompleter(nullptr);  // any text may be typed; none is put in the user's mouth
    BindLineEdit(box->lineEdit(), box, CBN_EDITCHANGE);
  }
  QObject::connect(box, &QComboBox::activated, box, [box] { Report(box, CBN_SELCHANGE); });
}

// Binds one control and answers the name of its class.
const char* Bind(QWidget* control) {
  if (auto* button = qobject_cast<QAbstractButton*>(control)) {
    QObject::connect(button, &QAbstractButton::clicked, button, [button] { Report(button, BN_CLICKED); });
    return "Button";
  }
  if (auto* line = qobject_cast<QLineEdit*>(control)) {
    BindLineEdit(line, line, EN_CHANGE);
    return "Edit";
  }
  if (auto* text = qobject_cast<QPlainTextEdit*>(control)) {
    BindTextEdit(text);
    return "Edit";
  }
  if (auto* box = qobject_cast<QComboBox*>(control)) {
    BindComboBox(box);
    return "ComboBox";
  }
  return "Static";
}

LRESULT SendToComboBox(QComboBox& box, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case CB_ADDSTRING: {
      const QString text = TextFromCodePage(reinterpret_cast<const char*>(lParam));
      int place = box.count();
      if (box.property("sorted").toBool()) {
        place = 0;
        while (place < box.count() && QString::compare(box.itemText(place), text, Qt::CaseInsensitive) <= 0)
          ++place;
      }
      const QString shown = box.currentText();
      box.insertItem(place, text);
      if (box.isEditable()) {
        // Adding to an empty box would select what was added.
        if (box.count() == 1) box.setCurrentIndex(-1);
        box.setEditText(shown);
      }
      return place;
    }
    case CB_RESETCONTENT:
      box.clear();
      if (box.isEditable()) box.clearEditText();
      return 0;
    case CB_GETCOUNT:
      return box.count();
    case CB_GETCURSEL:
      return box.currentIndex();
    case CB_SETCURSEL: {
      const int index = static_cast<int>(static_cast<LRESULT>(wParam));
      if (index >= box.count()) return kControlError;
      box.setCurrentIndex(index < 0 ? -1 : index);
      return index;
    }
    case CB_FINDSTRINGEXACT:
      return box.findText(TextFromCodePage(reinterpret_cast<const char*>(lParam)),
                          Qt::MatchExactly | Qt::MatchCaseSensitive);
    default:
      return kControlError;
  }
}

}  // namespace

void BindControls(QDialog& dialog) {
  const QList<QWidget*> children = dialog.findChildren<QWidget*>();
  for (QWidget* control : children) {
    const QVariant id = control->property("controlId");
    if (!id.isValid()) continue;
    WindowEntry& entry = AddWindow(control, WindowKind::kControl, Bind(control));
    entry.controlId = id.toInt();
  }
}

LRESULT SendToControl(const WindowEntry& control, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETTEXTLENGTH) return static_cast<LRESULT>(ControlText(*control.widget).size());
  if (message == WM_SETTEXT) {
    SetControlText(*control.widget, reinterpret_cast<const char*>(lParam));
    return 1;
  }
  if (message == EM_LIMITTEXT) {
    LimitControlText(*control.widget, static_cast<int>(wParam));
    return 1;
  }
  if (auto* box = qobject_cast<QComboBox*>(control.widget))
    return SendToComboBox(*box, message, wParam, lParam);
  return kControlError;
}
