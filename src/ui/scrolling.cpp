#include "ui/scrolling.h"

#include <QScrollArea>
#include <QVBoxLayout>

namespace marlevo {

void FillScrolling(QWidget* window, QWidget* page) {
  auto* const scroll = new QScrollArea(window);
  scroll->setFrameStyle(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setAlignment(Qt::AlignCenter);
  scroll->setWidgetResizable(true);
  scroll->setWidget(page);
  auto* const all = new QVBoxLayout(window);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(scroll);
  scroll->show();  // the window may be on the screen already
}

}  // namespace marlevo
