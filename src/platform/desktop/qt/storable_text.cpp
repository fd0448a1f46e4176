#include "platform/desktop/qt/storable_text.h"

#include <QLineEdit>
#include <QStringList>
#include <QToolTip>
#include <QValidator>

#include "platform/system/code_page.h"

namespace {

constexpr int kTipGap = 4;  // pixels below the text cursor
constexpr int kTipMs = 6000;
constexpr qsizetype kNamedCharacters = 5;

// Refuses a change that brings in what cannot be stored, and makes it again with the rest of it. (To correct
// it in place would cost the user what he can undo.)
class StorableValidator : public QValidator {
 public:
  explicit StorableValidator(QLineEdit& validated) : QValidator(&validated), edit(validated) {}

  State validate(QString& text, int&) const override {
    QString lacking;
    if (StorablePart(text, lacking) == text && OnOneLine(text) == text) return Acceptable;
    // When the edit has taken the change back.
    QMetaObject::invokeMethod(
        &edit, [this, text] { Repeat(text); }, Qt::QueuedConnection);
    return Invalid;
  }

 private:
  void Repeat(const QString& refused) const {
    const QString text = edit.text();
    const qsizetype selected = edit.selectedText().size();
    const int start = selected > 0 ? edit.selectionStart() : edit.cursorPosition();
    const QString added = refused.mid(start, refused.size() - text.size() + selected);
    // The user may have gone on meanwhile.
    if (text.left(start) + added + text.mid(start + selected) != refused) return;
    QString lacking;
    const QString kept = StorablePart(OnOneLine(added), lacking);
    if (!kept.isEmpty()) edit.insert(kept);
    TellLacking(edit, lacking);
  }

  QLineEdit& edit;
};

}  // namespace

void KeepStorable(QLineEdit& edit) {
  edit.setValidator(new StorableValidator(edit));  // the edit's, which owns it
}

QString StorablePart(const QString& text, QString& lacking) {
  QString kept;
  for (const uint number : text.toUcs4()) {
    const auto code = static_cast<char32_t>(number);
    const QString character = QString::fromUcs4(&code, 1);
    if (platform::InCodePage(code)) {
      kept += character;
    } else if (!lacking.contains(character)) {
      lacking += character;
    }
  }
  return kept;
}

QString OnOneLine(const QString& text) {
  QString line = text;
  line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
  for (QChar& character : line) {
    if (character == u'\t' || character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
        character == QChar::ParagraphSeparator)
      character = u' ';
  }
  return line;
}

void TellLacking(QWidget& edit, const QString& lacking) {
  if (lacking.isEmpty()) return;
  const QList<uint> characters = lacking.toUcs4();
  QStringList names;
  for (const uint number : characters.first(std::min(characters.size(), kNamedCharacters))) {
    const auto code = static_cast<char32_t>(number);
    names += u'"' + QString::fromUcs4(&code, 1) + u'"';
  }
  QString list = names.join(QStringLiteral(", "));
  if (characters.size() > kNamedCharacters) list += QStringLiteral(" and others");
  const QString text = characters.size() == 1
                           ? QStringLiteral("The character %1 cannot be stored.").arg(list)
                           : QStringLiteral("The characters %1 cannot be stored.").arg(list);
  const QRect cursor = edit.inputMethodQuery(Qt::ImCursorRectangle).toRect();
  QToolTip::showText(edit.mapToGlobal(cursor.bottomLeft() + QPoint(0, kTipGap)), text, &edit, QRect(),
                     kTipMs);
}
