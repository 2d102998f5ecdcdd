// The progress window of printing, with a button that cancels. The window comes up only when printing takes longer than
// a second.
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

namespace marlevo {

class PrintProgress {
 public:
  // `pages`: how many will be printed, of all jobs together.
  PrintProgress(QWidget* parent, int pages);

  // To be called before each page. False once the operator has cancelled: the page must not be printed then.
  bool NextPage();
  // How many NextPage let through.
  int Pages() const { return pages_; }
  bool Cancelled() const { return window_.wasCanceled(); }

  // To be called after the last job: after a cancel, which closes the window, tells the operator how many pages went
  // out.
  void Finish();

 private:
  QProgressDialog window_;
  QElapsedTimer since_update_;
  int pages_ = 0;
};

}  // namespace marlevo
