// The program's QApplication and its two guards. Of errors: an exception that leaves any handler of any window, in
// whatever nested event loop, ends here and is shown as the error report; windows catch nothing. Of gestures: what is
// left of a gesture that has acted already is not delivered.
#pragma once

#include <QApplication>
#include <QString>
#include <QTranslator>
#include <deque>
#include <exception>
#include <functional>

#include "ui/gesture_guard.h"

namespace marlevo {

class Application : public QApplication {
  Q_OBJECT

 public:
  // Sets language, fonts, colours and style.
  Application(int& argc, char** argv);

  bool notify(QObject* receiver, QEvent* event) override;

  // Runs `start` under the guard, then the event loop. The exit status is 1 when the operator ended the program from an
  // error report, otherwise that of the event loop.
  int Run(const std::function<void()>& start);

 private:
  struct Report {
    QString attempted;  // what was being done
    QString subject;    // on which file or printer
    QString sentence;   // what is wrong, for the operator
    QString words;      // the engine's own, for whoever helps the operator
  };

  // The report of an exception. Reports never stand on top of one another: one that comes while another is shown waits.
  void ReportError(const std::exception& error);
  // True when the operator wants to end the program.
  static bool Show(const Report& report);

  QTranslator words_;
  GestureGuard gestures_;
  std::deque<Report> waiting_;
  bool reporting_ = false;
  bool ended_ = false;
};

}  // namespace marlevo
