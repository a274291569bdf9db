#include "library/screens/CardState.h"

#include <QStyle>

#include "library/LibraryScreen.h"
#include "ui/Translation.h"

namespace zemo {

namespace {
constexpr const char* kMark = "mark";  // what the theme makes one that cannot be missed
}

CardState::CardState(const LibraryEditor& editor, const Translation& texts, QWidget* parent)
    : QLabel(parent), editor_(editor), texts_(texts) {
  setObjectName(QStringLiteral("LblEtat"));
  setTextFormat(Qt::PlainText);
  setProperty(kMark, false);
}

void CardState::ShowState() {
  const bool changed = editor_.gone || Library::IsChanged(editor_);
  if (property(kMark).toBool() != changed) {
    setProperty(kMark, changed);
    style()->unpolish(this);
    style()->polish(this);
  }
  setText(Told());
  setToolTip(editor_.gone ? texts_.Word("Gone.Tip") : QString());
}

QString CardState::Told() const {
  const auto number = [](int32_t of) { return QString::number(of); };
  if (editor_.gone) return texts_.Word("Gone", number(editor_.Code()));
  if (Library::IsChanged(editor_))
    return editor_.Code() > 0 ? texts_.Word("Changed", number(editor_.Code()))
                              : texts_.Word("NotStored");
  if (editor_.stored.cards == 1) return texts_.Word("StoredCard", number(editor_.stored.code));
  if (editor_.stored.cards > 1) return texts_.Word("StoredCards", number(editor_.stored.cards));
  return {};
}

}  // namespace zemo
