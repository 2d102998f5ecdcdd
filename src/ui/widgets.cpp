#include "ui/widgets.h"

#include <QWheelEvent>

#include "ui/style.h"

namespace marlevo {

QString ElementName(const QString& array, int index) {
  return array + '(' + QString::number(index) + ')';
}

QPushButton* NewButton(QWidget* parent, const QString& name, const QString& caption, Emphasis emphasis) {
  auto* const button = Named(new QPushButton(caption, parent), name);
  button->setAutoDefault(false);
  if (emphasis == Emphasis::kMain) {
    button->setPalette(MainButtonPalette());
  }
  return button;
}

QLabel* NewLabel(QWidget* parent, const QString& name, const QString& text) {
  return Named(new QLabel(text, parent), name);
}

void SetUpPanel(QFrame& frame) {
  frame.setFrameStyle(QFrame::StyledPanel);
  frame.setBackgroundRole(QPalette::Base);  // the frame itself fills its inside with it, up to the round corners
}

DropDownList::DropDownList(QWidget* parent, const QString& name) : QComboBox(parent) {
  setObjectName(name);
  setFocusPolicy(Qt::StrongFocus);
}

void DropDownList::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace marlevo
