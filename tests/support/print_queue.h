// A real print queue for one test program: a private cupsd on a socket in a temporary folder, its queue the default
// printer, every job kept as it was sent. Its paper is Letter, so that a program that takes A4 for granted is noticed.
#pragma once

#include <QTemporaryDir>
#include <string>
#include <vector>

#include "support/printed_pages.h"

namespace marlevo::test {

struct PrintedJob {
  std::filesystem::path document;  // PDF
  std::string attributes;          // as the server keeps them, binary
  std::vector<PrintedPage> pages;
};

class PrintQueue {
 public:
  static bool Installed();

  // Starts the server and makes it this process's print system. A process can have only one queue, because Qt asks for
  // the print system once.
  PrintQueue();
  ~PrintQueue();

  // What was sent since the last call, in the order of sending.
  std::vector<PrintedJob> TakeJobs();
  // Whether the queue takes jobs (it does at first).
  void Accept(bool accept);

 private:
  QTemporaryDir folder_;
  int jobs_ = 0;
};

}  // namespace marlevo::test
