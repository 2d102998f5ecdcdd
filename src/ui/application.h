// The program's QApplication with its two guards. The guard of errors catches every exception that leaves a handler of
// any window, in any nested event loop, and shows it as the error report; windows catch nothing. The guard of gestures
// holds back the rest of a gesture that has acted already, such as the second press of a double click. F1 opens the
// manual, whatever window is in front.
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
  // Sets language, version, icon, fonts, colours and style.
  Application(int& argc, char** argv);

  bool notify(QObject* receiver, QEvent* event) override;

  // Runs `start` under the guard of errors, then the event loop. Returns the exit status: 1 when the operator ended the
  // program from an error report, otherwise that of the event loop.
  int Run(const std::function<void()>& start);

 private:
  struct Report {
    QString attempted;  // what was being done
    QString subject;    // on which file or printer
    QString sentence;   // what is wrong, for the operator
    QString words;      // the technical words of what failed, for whoever helps the operator
  };

  // Shows the report of an exception. One that comes while another report is shown waits until that one is closed.
  void ReportError(const std::exception& error);
  // Returns whether the operator wants to end the program.
  static bool Show(const Report& report);

  QTranslator words_;
  GestureGuard gestures_;
  std::deque<Report> waiting_;
  bool reporting_ = false;
  bool ended_ = false;
};

}  // namespace marlevo
