#include "customers/message_panel.h"

#include <QProgressBar>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/appearance.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {
constexpr int kPlaces = 40;  // the bar is painted so many times on its way from empty to full
}

MessagePanel::MessagePanel(QWidget* window) : QFrame(window), bar_(Named(new QProgressBar(this), "prgMsg")) {
  setObjectName("picMsg");
  SetUpPanel(*this);
  bar_->setRange(0, kPlaces);
  bar_->setTextVisible(false);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(distances::kWide, distances::kWide, distances::kWide, distances::kWide);
  column->setSpacing(distances::kApart);
  column->addWidget(NewLabel(this, "lblMsg", "資料處理中,請稍等 ..."), 0, Qt::AlignHCenter);
  column->addWidget(bar_);
  hide();
}

MessagePanel::Work::Work(MessagePanel& panel, int steps) : panel_(panel), steps_(std::max(steps, 1)) {
  panel_.bar_->setValue(0);
  panel_.adjustSize();
  panel_.move(panel_.parentWidget()->rect().center() - panel_.rect().center());
  panel_.raise();
  panel_.show();
  panel_.repaint();
}

void MessagePanel::Work::Advance(int done) {
  const int place = static_cast<int>(static_cast<long long>(done) * kPlaces / steps_);
  if (place != shown_) {
    shown_ = place;
    panel_.bar_->setValue(std::min(place, kPlaces));  // paints at once
  }
}

}  // namespace marlevo
