#include "board/button_bar.h"

#include <QGridLayout>

#include "ui/appearance.h"

namespace marlevo {

namespace {
constexpr int kColumns = 4;
constexpr int kMainButtonHeight = 48;
}  // namespace

ButtonBar::ButtonBar(QWidget* parent, const QString& name) : QFrame(parent), grid_(new QGridLayout(this)) {
  setObjectName(name);
  setFrameStyle(QFrame::StyledPanel);
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  grid_->setContentsMargins(10, 10, 10, 10);
  grid_->setSpacing(8);
  for (int column = 0; column < kColumns; ++column) {
    grid_->setColumnStretch(column, 1);
  }
}

QPushButton* ButtonBar::Add(const QString& name, const QString& caption, const QKeySequence& key, const QString& tip,
                            Width width, Emphasis emphasis) {
  QPushButton* const button = NewButton(this, name, caption, emphasis);
  button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  QStringList tips{tip};
  if (!key.isEmpty()) {
    button->setShortcut(key);
    tips.append("按鍵 " + key.toString(QKeySequence::NativeText));
  }
  tips.removeAll({});
  button->setToolTip(tips.join('\n'));
  if (emphasis == Emphasis::kMain) {
    button->setMinimumHeight(kMainButtonHeight);
    button->setFont(LargeFont());
  }
  buttons_.append(button);

  const int span = static_cast<int>(width);
  if (column_ + span > kColumns) {
    ++row_;
    column_ = 0;
  }
  grid_->addWidget(button, row_, column_, 1, span);
  column_ += span;
  return button;
}

void ButtonBar::AddNote(QLabel* note) {
  row_ += column_ > 0 ? 1 : 0;
  grid_->addWidget(note, row_, 0, 1, kColumns);
  column_ = kColumns;
}

void ButtonBar::SetCaption(QPushButton& button, const QString& caption) {
  // A new text takes a button's key away.
  const QKeySequence key = button.shortcut();
  button.setText(caption);
  button.setShortcut(key);
}

QString ButtonBar::Hint() const {
  QStringList keys;
  for (const QPushButton* const button : buttons_) {
    if (!button->shortcut().isEmpty()) {
      keys.append(button->shortcut().toString(QKeySequence::NativeText) + ' ' + button->text().trimmed());
    }
  }
  return keys.join("   ");
}

}  // namespace marlevo
