#include "board/button_bar.h"

#include <QGridLayout>

#include "board/growth.h"

namespace marlevo {

namespace {

constexpr int kColumns = 4;
constexpr int kMainButtonHeight = 40;

}  // namespace

ButtonBar::ButtonBar(QWidget* parent, const QString& name, Shape shape)
    : QFrame(parent), shape_(shape), grid_(new QGridLayout(this)) {
  setObjectName(name);
  grid_->setContentsMargins(0, 0, 0, 0);
  if (shape == Shape::kPanel) {
    SetUpPanel(*this);
    grid_->setContentsMargins(distances::kNear, distances::kNear, distances::kNear, distances::kNear);
    for (int column = 0; column < kColumns; ++column) {
      grid_->setColumnStretch(column, 1);
    }
  }
}

QPushButton* ButtonBar::Add(const QString& name, const QString& caption, const QKeySequence& key, const QString& tip,
                            Width width, Emphasis emphasis) {
  QPushButton* const button = NewButton(this, name, caption, emphasis);
  button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  button->setToolTip(tip);
  if (!key.isEmpty()) {
    PressByKey(*button, key, *button);
    keys_.append({key.toString(QKeySequence::NativeText), button});
  }
  if (emphasis == Emphasis::kMain) {
    main_ = button;
    SetGrowth(1);
  }

  const int span = shape_ == Shape::kPanel ? static_cast<int>(width) : 1;
  if (shape_ == Shape::kPanel && column_ + span > kColumns) {
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

void ButtonBar::SetGrowth(double growth) {
  if (main_ != nullptr) {
    main_->setMinimumHeight(Grown(kMainButtonHeight, growth));
    main_->setFont(Grown(LargeFont(), growth));
  }
}

QString ButtonBar::Hint() const {
  QStringList keys;
  for (const Key& key : keys_) {
    keys.append(key.text + ' ' + key.button->text().trimmed());
  }
  return keys.join("   ");
}

}  // namespace marlevo
