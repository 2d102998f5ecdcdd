#include "customers/find_box.h"

#include <QShortcut>
#include <algorithm>

#include "customers/customer_grid.h"
#include "customers/customer_search.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

constexpr QRgb kNothingFoundGround = 0xfffde7e7;
constexpr QRgb kNothingFoundText = 0xffa4161a;

}  // namespace

FindBox::FindBox(QWidget* parent, CustomerGrid& grid) : QLineEdit(parent), grid_(grid) {
  setObjectName("txtFind");
  setPlaceholderText("客戶編號、姓名或電話的一部份");
  setClearButtonEnabled(true);
  connect(this, &QLineEdit::textChanged, this, &FindBox::txtFind_Change);
  connect(this, &QLineEdit::returnPressed, this, &FindBox::txtFind_Return);
  connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this, &FindBox::txtFind_F3);
  connect(new QShortcut(Qt::SHIFT | Qt::Key_F3, this), &QShortcut::activated, this, &FindBox::txtFind_ShiftF3);
}

QHBoxLayout* FindBox::Line() {
  auto* const line = new QHBoxLayout;
  QLabel* const caption = NewLabel(parentWidget(), "lblFind", "尋找客戶");
  caption->setBuddy(this);
  line->addWidget(caption);
  line->addWidget(this, 1);
  return line;
}

void FindBox::txtFind_Change() {
  Find(Place(), 1);
}

void FindBox::txtFind_Return() {
  if (taken_ || grid_.FoundRow() == -1) {
    txtFind_F3();
  }
  if (grid_.FoundRow() != -1) {
    taken_ = true;
    grid_.Choose(grid_.FoundRow());
  }
}

void FindBox::txtFind_F3() {
  if (text().isEmpty()) {
    setFocus();
  }
  Find(Place() + 1, 1);
}

void FindBox::txtFind_ShiftF3() {
  Find(Place() - 1, -1);
}

int FindBox::Place() const {
  return std::max(grid_.FoundRow() != -1 ? grid_.FoundRow() : grid_.currentIndex().row(), 0);
}

void FindBox::Find(int from, int step) {
  const std::optional<int> row = FindCustomer(grid_.Customers(), text().toStdString(), from, step);
  grid_.ShowFound(row.value_or(-1));
  taken_ = false;
  QPalette colours;
  if (!row && !text().isEmpty()) {
    colours.setColor(QPalette::Base, QColor(kNothingFoundGround));
    colours.setColor(QPalette::Text, QColor(kNothingFoundText));
  }
  setPalette(colours);
}

}  // namespace marlevo
