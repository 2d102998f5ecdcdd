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

  // The panel is on the screen as long as a Work lives, so that an exception takes the panel down, too. The panel is
  // painted directly, without an event loop: no press of the operator is handled while the work goes on.
  class Work {
   public:
    // `steps`: how many steps fill the bar.
    Work(MessagePanel& panel, int steps);
    ~Work() { panel_.hide(); }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    // To be called after every step with the number of steps done. Only one call in many paints, so a step costs
    // nothing.
    void Advance(int done);

   private:
    MessagePanel& panel_;
    int steps_;
    int shown_ = 0;  // how many of the bar's places are filled
  };

 private:
  QProgressBar* bar_;
};

}  // namespace marlevo
