// The panel picMsg: "資料處理中,請稍等 ..." with a progress bar under it, in the middle of a window while it works.
#pragma once

#include <QFrame>

class QProgressBar;

namespace marlevo {

class MessagePanel : public QFrame {
  Q_OBJECT

 public:
  // Hidden at first.
  explicit MessagePanel(QWidget* window);

  // Keeps the panel on the screen as long as it lives, so that an error on the way takes the panel down too. No event
  // of the operator is handled meanwhile: painting needs no event loop.
  class Work {
   public:
    // `steps`: how many steps the bar stands for.
    Work(MessagePanel& panel, int steps);
    ~Work() { panel_.hide(); }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    // Paints now and then only: a step costs nothing.
    void Advance(int done);

   private:
    MessagePanel& panel_;
    int steps_;
    int shown_ = 0;  // in places of the bar
  };

 private:
  QProgressBar* bar_;
};

}  // namespace marlevo
