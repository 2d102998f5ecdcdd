// The progress window of a print: comes up when printing takes longer than a second, with a button that cancels.
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

namespace marlevo {

class PrintProgress {
 public:
  // `pages` of all jobs together.
  PrintProgress(QWidget* parent, int pages);

  // To be called before each page with the number of pages done. False once the operator has cancelled.
  bool Continue(int pages_done);

  // To be called after the last job: tells the operator how many pages went out when he cancelled.
  void Finish(int pages_done);

 private:
  QProgressDialog window_;
  QElapsedTimer since_update_;
};

}  // namespace marlevo
