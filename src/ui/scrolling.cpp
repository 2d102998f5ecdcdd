#include "ui/scrolling.h"

#include <QEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/appearance.h"

namespace marlevo {

namespace {

constexpr QSize kDecoration(16, 40);  // borders and title bar, somewhat more than the desktops' own

class ScrollingPart : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

  QSize sizeHint() const override { return widget()->sizeHint(); }
  QSize minimumSizeHint() const override {
    // So high that something is to be seen of what scrolls.
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), 2 * fontMetrics().height()};
  }

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::LayoutRequest) {
      updateGeometry();  // the page needs another size
    }
    return QScrollArea::event(event);
  }
};

void SetUpScrolling(QScrollArea& scroll, QWidget* page) {
  scroll.setFrameStyle(QFrame::NoFrame);
  scroll.setFocusPolicy(Qt::NoFocus);
  scroll.setWidgetResizable(true);
  scroll.setWidget(page);
}

}  // namespace

QScrollArea* FillScrolling(QWidget* window, QWidget* page, QLayout* buttons) {
  auto* const scroll = new QScrollArea(window);
  SetUpScrolling(*scroll, page);
  auto* const all = new QVBoxLayout(window);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(scroll);
  if (buttons != nullptr) {
    buttons->setContentsMargins(distances::kApart, 0, distances::kApart, distances::kApart);
    all->addLayout(buttons);
  }
  return scroll;
}

QScrollArea* NewScrollingPart(QWidget* page) {
  auto* const part = new ScrollingPart;
  SetUpScrolling(*part, page);
  part->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  part->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  return part;
}

void FitScreen(QWidget& window, const QSize& comfortable) {
  window.resize(comfortable.boundedTo(window.screen()->availableSize() - kDecoration));
}

}  // namespace marlevo
