// The progress window of a print: comes up when printing takes longer than a second, with a button that cancels.
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

namespace marlevo {

class PrintProgress {
 public:
  // `pages`: how many will be printed, of all jobs together.
  PrintProgress(QWidget* parent, int pages);

  // To be called before each page. False once the operator has cancelled: that page must not be printed any more.
  bool NextPage();
  bool Cancelled() const { return window_.wasCanceled(); }

  // To be called after the last job: closes the window, and after a cancel tells the operator how many pages went out.
  void Finish();

 private:
  QProgressDialog window_;
  QElapsedTimer since_update_;
  int pages_ = 0;  // begun
};

}  // namespace marlevo
