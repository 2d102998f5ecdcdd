#include "ui/scrolling.h"

#include <QScrollArea>
#include <QVBoxLayout>

namespace marlevo {

QScrollArea* FillScrolling(QWidget* window, QWidget* page) {
  auto* const scroll = new QScrollArea(window);
  scroll->setFrameStyle(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidgetResizable(true);
  scroll->setWidget(page);
  auto* const all = new QVBoxLayout(window);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(scroll);
  return scroll;
}

}  // namespace marlevo
