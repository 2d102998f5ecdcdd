// The whole program in one test: how to come to each of its windows, and hands for them. What the windows store goes to
// a new database with one customer, one ticket and one draw.
#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <vector>

#include "board/frmMarlevo.h"
#include "customers/customer_statements.h"
#include "customers/frmCustom.h"
#include "customers/frmSave.h"
#include "draws/frmInput.h"
#include "platform/database/database_fixture.h"
#include "printing/frmPrint.h"
#include "printing/frmPrintNote.h"
#include "printing/frmSetPrinter.h"
#include "ui/scrolling.h"

namespace marlevo {

using Step = std::function<void()>;

// How to come to a window from the board: buttons to be clicked, and lists ("lst", "mfg") whose first row is.
inline const QStringList kScenes = {"",
                                    "cmdCombine",
                                    "cmdCombine cmdBack",
                                    "cmdCombine cmdCheck",
                                    "cmdCombine cmdDelete",
                                    "cmdCombine cmdDelete cmdDel1",
                                    "cmdCombine cmdSave",
                                    "cmdCombine cmdSave cmdPrint",
                                    "cmdCombine cmdPrint",
                                    "cmdCombine cmdPrint chkPlay(0)",
                                    "cmdCustom mfgCustom_H lstRecord",
                                    "cmdCustom mfgCustom_H lstRecord cmdDel",
                                    "cmdCustom mfgCustom_H lstRecord cmdDelRecord",
                                    "cmdCustom mfgCustom_H lstRecord cmdLoadRecord",
                                    "cmdCombine cmdBack cmdCustom mfgCustom_H lstRecord cmdLoadRecord",
                                    "cmdCustom mfgCustom_H cmdAdd",
                                    "cmdCustom mfgCustom_H Command1",
                                    "cmdCustom Command1 cmdCheck2",
                                    "cmdInput mfgNumeric",
                                    "cmdInput cmdAdd",
                                    "cmdPrintNote",
                                    "cmdPrintNote cmdPrint",
                                    "cmdSetPrinter",
                                    "cmdSetPrinter cmdSave"};
inline QWidget* FrontWindow() {
  QWidget* const modal = QApplication::activeModalWidget();
  if (modal == nullptr) {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "frmMarlevo") {
        return window;
      }
    }
  }
  return modal;
}

inline QRect OnScreen(const QWidget& widget) {
  return {widget.mapToGlobal(QPoint(0, 0)), widget.size()};
}

inline QWindow* WindowAt(const QPoint& place) {
  QWindow* found = nullptr;
  for (QWindow* const window : QGuiApplication::topLevelWindows()) {
    found = window->isVisible() && window->geometry().contains(place) ? window : found;
  }
  return found;
}

inline bool CanBePressed(const QWidget& widget) {
  const QPoint centre = OnScreen(widget).center();
  const QWidget* const at = widget.window()->childAt(widget.window()->mapFromGlobal(centre));
  return widget.isVisible() && widget.isEnabled() && at != nullptr && (at == &widget || widget.isAncestorOf(at));
}

// What a hand can press in a window; of an array of alike widgets only the first, but every kind. Not the end of the
// program in an error report, after which no window opens any more.
inline QWidgetList Targets(const QWidget& window) {
  QWidgetList targets;
  for (QWidget* const widget : window.findChildren<QWidget*>()) {
    const QString name = widget->objectName();
    const bool first = !name.endsWith(')') || name.endsWith("(0)") || name.startsWith("chkPlay");
    const auto* const button = qobject_cast<const QAbstractButton*>(widget);
    const bool ends = window.objectName() == "frmError" && button != nullptr && button->text() == "結束";
    if (first && !ends && CanBePressed(*widget) && (button != nullptr || qobject_cast<QComboBox*>(widget) != nullptr)) {
      targets += widget;
    }
  }
  return targets;
}

// Without times of the day, which differ however alike two gestures are.
inline QString Described(const QWidget& widget) {
  static const QRegularExpression time("\\d\\d:\\d\\d:\\d\\d");
  const auto* const view = qobject_cast<const QAbstractItemView*>(&widget);
  return widget.objectName() + (widget.isEnabled() ? ' ' : '-') + widget.property("text").toString().remove(time) +
         widget.property("currentText").toString() + (widget.property("checked").toBool() ? "*" : "") +
         (view == nullptr ? "" : QString::number(view->model()->rowCount()));
}

// Notes the windows that open.
class Watcher : public QObject {
 public:
  QStringList opened;

  Watcher() { qApp->installEventFilter(this); }
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (event->type() == QEvent::Show && qobject_cast<QDialog*>(receiver) != nullptr) {
      const auto* const box = qobject_cast<QMessageBox*>(receiver);
      opened += "opened " + receiver->objectName() + (box == nullptr ? "" : box->text());
    }
    return false;
  }
};

class ProgramFixture : public DatabaseFixture {
 protected:
  ProgramFixture() {
    qputenv("CUPS_SERVER", "/nowhere");  // what is printed ends in an error report, which is counted
    Connection connection(Opening());
    connection.Execute(InsertCustomer({"A01", "王小明", "", "", ""}));
    connection.Execute(InsertTicket("A01", "20240607120000", {0, 25, 1, {1, 2, 3, 4}}));
    connection.Execute("INSERT INTO NUMERIC (VOU_NO,NO1,NO2,NO3,NO4) VALUES ('113001',1,2,3,4)");
    connection.Flush();
    std::filesystem::copy_file(file_, folder_.Path() / "fresh.mdb");
  }

  // Opens the program, goes to the scene, and does the steps there. Each step begins when everything that the one
  // before it started is done or waits in a modal window. In the end closes what is open.
  void Play(const QString& scene, const std::vector<Step>& steps) {
    std::filesystem::remove(file_);
    std::filesystem::copy_file(folder_.Path() / "fresh.mdb", file_);
    const std::string database = Opening();
    frmMarlevo board(
        {.customers = [&](QWidget* parent, const StoredListShower& show) { frmCustom(parent, database, show).exec(); },
         .draws = [&](QWidget* parent) { frmInput(parent, database).exec(); },
         .print_note = [](QWidget* parent) { frmPrintNote(parent).exec(); },
         .set_printer = [&](QWidget* parent) { frmSetPrinter(parent, folder_.Path()).exec(); },
         .save = [&](QWidget* parent, const CurrentList& list) { frmSave(parent, database, list).exec(); },
         .print = [&](QWidget* parent, const CurrentList& list) { frmPrint(parent, list, folder_.Path()).exec(); },
         .database_problem = {},
         .load_slip_settings = {}});
    QObject::connect(&board, &frmMarlevo::Unloaded, [this] { watcher_.opened += "the end"; });
    board.Form_Load();
    for (const char* const box : {"chkPlay(0)", "chkPlay(2)", "chkNum1(1)", "chkNum2(3)", "chkNum3(5)", "chkNum4(6)"}) {
      board.findChild<QAbstractButton*>(box)->setChecked(true);
    }
    FitScreen(board, frmMarlevo::kComfortable);
    board.showMaximized();
    QCoreApplication::processEvents();

    std::vector<Step> all;
    for (const QString& name : scene.split(' ', Qt::SkipEmptyParts)) {
      all.emplace_back([this, name] {
        auto* const widget = FrontWindow()->findChild<QWidget*>(name);
        ASSERT_NE(widget, nullptr) << name.toStdString() << " in " << watcher_.opened.join(" ").toStdString();
        const auto* const view = qobject_cast<QAbstractItemView*>(widget);
        Click(view == nullptr ? OnScreen(*widget).center()
                              : view->viewport()->mapToGlobal(view->visualRect(view->model()->index(0, 0)).center()));
      });
    }
    all.emplace_back([this] { watcher_.opened.clear(); });
    all.insert(all.end(), steps.begin(), steps.end());

    std::size_t next = 0;
    QObject context;
    const Step go = [&] {
      // A timer without interval fires when no other event waits.
      auto* const timer = new QTimer(&context);
      timer->setSingleShot(true);
      QObject::connect(timer, &QTimer::timeout, [&go] { go(); });
      timer->start();
      for (const QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->objectName() == "frmMessage2" && window->isVisible()) {
          return;
        }
      }
      if (FrontWindow()->isVisible() && !FrontWindow()->windowHandle()->isExposed()) {
        return;
      }
      if (next < all.size()) {
        all[next++]();
        return;
      }
      for (QWidget* const window : {QApplication::activePopupWidget(), QApplication::activeModalWidget()}) {
        if (window != nullptr) {
          window->close();
        }
      }
    };
    go();
    while (next < all.size()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
  }

  // Times of presses count in milliseconds from the beginning of a gesture; 0 begins a new one.
  void Send(QEvent::Type type, const QPoint& place, int time) {
    QWindow* const window = WindowAt(place);
    clock_ += time == 0 && type == QEvent::MouseButtonPress ? 10'000 : 0;
    if (window != nullptr) {
      qt_handleMouseEvent(window, window->mapFromGlobal(place), place,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, type, {}, clock_ + time);
    }
  }
  void Click(const QPoint& place, int time = 0) {
    Send(QEvent::MouseButtonPress, place, time);
    Send(QEvent::MouseButtonRelease, place, time + 20);
  }

  // All that can be seen and all that is stored. Qt's window of folders is left out: it looks at the disk in a thread
  // of its own.
  QStringList State() {
    QStringList lines;
    for (const QWidget* const widget : QApplication::allWidgets()) {
      if (widget->isVisible() && !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_") &&
          !widget->window()->inherits("QFileDialog")) {
        lines += Described(*widget);
      }
    }
    lines.sort();
    lines += watcher_.opened;
    Connection connection(Opening());
    for (const char* const table : {"CUSTOM_H", "CUSTOM_D", "NUMERIC"}) {
      lines += QString::number(Count(connection, table));
    }
    return lines;
  }

  Watcher watcher_;  // of what has happened since the scene was reached
  inline static int clock_ = 0;
};

}  // namespace marlevo
