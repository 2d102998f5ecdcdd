// A gesture of the hand acts once: double clicks on every button of every window and presses on whatever lies there
// afterwards, drags, held keys, the wheel. Each is done to the real program, and what can be seen and is stored
// afterwards is compared with what one plain click or key leaves. The times of presses are written into the events:
// nothing waits.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QMessageBox>
#include <QRegularExpression>
#include <QShortcut>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <set>

#include "board/frmMarlevo.h"
#include "customers/customer_statements.h"
#include "customers/frmCustom.h"
#include "customers/frmSave.h"
#include "draws/frmInput.h"
#include "platform/database/database_fixture.h"
#include "printing/frmPrint.h"
#include "printing/frmPrintNote.h"
#include "printing/frmSetPrinter.h"

namespace marlevo {
namespace {

using Step = std::function<void()>;

// How to come to a window from the board: buttons to be clicked, and lists ("lst", "mfg") whose first row is.
const QStringList kScenes = {"",
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
// Milliseconds between the presses of a double click, taken in turn. The last is the longest there is.
constexpr int kBetweenPresses[] = {40, 150, 400};

QWidget* FrontWindow() {
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

QRect OnScreen(const QWidget& widget) {
  return {widget.mapToGlobal(QPoint(0, 0)), widget.size()};
}

QWindow* WindowAt(const QPoint& place) {
  QWindow* found = nullptr;
  for (QWindow* const window : QGuiApplication::topLevelWindows()) {
    found = window->isVisible() && window->geometry().contains(place) ? window : found;
  }
  return found;
}

bool CanBePressed(const QWidget& widget) {
  const QPoint centre = OnScreen(widget).center();
  const QWidget* const at = widget.window()->childAt(widget.window()->mapFromGlobal(centre));
  return widget.isVisible() && widget.isEnabled() && at != nullptr && (at == &widget || widget.isAncestorOf(at));
}

// What a hand can press in a window; of an array of alike widgets only the first, but every kind. Not the end of the
// program in an error report, after which no window opens any more.
QWidgetList Targets(const QWidget& window) {
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
QString Described(const QWidget& widget) {
  static const QRegularExpression time("\\d\\d:\\d\\d:\\d\\d");
  const auto* const view = qobject_cast<const QAbstractItemView*>(&widget);
  return widget.objectName() + (widget.isEnabled() ? ' ' : '-') + widget.property("text").toString().remove(time) +
         widget.property("currentText").toString() + (widget.property("checked").toBool() ? "*" : "") +
         (view == nullptr ? "" : QString::number(view->model()->rowCount()));
}

// The lines that only one of two states has; empty when the states are the same.
std::string Difference(const QStringList& before, const QStringList& after) {
  QStringList lines;
  for (const QString& line : before + after) {
    if (const auto more = after.count(line) - before.count(line); more != 0) {
      lines += (more > 0 ? " + " : " - ") + line;
    }
  }
  lines.removeDuplicates();
  return lines.join('\n').toStdString();
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

class GesturesTest : public DatabaseFixture {
 protected:
  GesturesTest() {
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
    board.setGeometry(0, 0, 800, 800);
    board.show();
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

TEST_F(GesturesTest, ASecondPressNeverActsAgainNorOnWhatHasComeSince) {
  std::set<std::string> pairs;
  for (const QString& scene : kScenes) {
    qsizetype targets = 1;
    for (qsizetype target = 0; target < targets; ++target) {
      QString name;
      QRect place;
      QStringList once;
      std::vector<std::pair<QPoint, QString>> afterwards;  // what lies under the pointer after the first press
      const Step look = [&] {
        const QWidgetList all = Targets(*FrontWindow());
        targets = all.size();
        name = all[target]->objectName() + ' ' + Described(*all[target]);
        place = OnScreen(*all[target]);
        afterwards.assign(1, {place.center(), name});
      };
      const Step find = [&] {
        once = State();
        for (const QWidget* const window : QApplication::topLevelWidgets()) {
          for (const QWidget* const widget : window->isVisible() ? Targets(*window) : QWidgetList()) {
            const QRect common = OnScreen(*widget) & place;
            if (!common.isEmpty() && OnScreen(*widget) != place &&
                WindowAt(common.center()) == window->windowHandle()) {
              afterwards.emplace_back(common.center(), Described(*widget));
            }
          }
        }
      };
      Play(scene, {look, [&] { Click(place.center()); }, [] {}, find});
      for (const auto& [point, there] : afterwards) {
        pairs.insert((scene + ": " + name + " > " + there).toStdString());
        const int time = kBetweenPresses[pairs.size() % 3];
        QStringList twice;
        Play(scene,
             {[&, at = point] { Click(at); }, [&, at = point] { Click(at, time); }, [] {}, [&] { twice = State(); }});
        EXPECT_EQ(Difference(once, twice), "") << scene.toStdString() << ": " << name.toStdString() << ", then "
                                               << there.toStdString() << " after " << time << " ms";
      }
    }
  }
  std::printf("%zu pairs of a button and what lies there afterwards\n", pairs.size());
  EXPECT_GT(pairs.size(), 100U);
}

TEST_F(GesturesTest, NothingThatDeletesEndsOrPrintsStandsWhereAButtonOfTheNextStageStands) {
  const QRegularExpression harmful("^(cmdClear|cmdExit|cmdPrint.*|cmdDel\\d)$");
  const QString stages[] = {"cmdCombine cmdBack", "cmdCombine", "cmdCombine cmdDelete"};
  std::vector<std::pair<QString, QRect>> before;
  for (const QString& stage : stages) {
    std::vector<std::pair<QString, QRect>> buttons;
    Play(stage, {[&] {
           for (const QWidget* const target : Targets(*FrontWindow())) {
             if (target->objectName().startsWith("cmd") || target->objectName().startsWith("Command")) {
               buttons.emplace_back(target->objectName(), OnScreen(*target));
             }
           }
         }});
    EXPECT_GE(buttons.size(), 4U);
    for (const auto& [name, place] : before) {
      for (const auto& [other, other_place] : buttons) {
        const bool harms = name.contains(harmful) || other.contains(harmful);
        EXPECT_FALSE(harms && place.intersects(other_place)) << name.toStdString() << " and " << other.toStdString();
      }
    }
    before = buttons;
  }
}

TEST_F(GesturesTest, DragsAndTheWheelDoNothing) {
  for (const QString& scene : kScenes) {
    std::vector<QPoint> buttons;
    QStringList before;
    const Step wheel = [&] {
      before = State();
      for (QWidget* const target : Targets(*FrontWindow())) {
        const QPoint centre = OnScreen(*target).center();
        QWheelEvent turn(target->rect().center(), centre, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        target->setFocus();
        QCoreApplication::sendEvent(target, &turn);
        if (qobject_cast<const QAbstractButton*>(target) != nullptr) {
          buttons.push_back(centre);
        }
      }
      EXPECT_EQ(Difference(before, State()), "") << scene.toStdString() << ": wheel";
    };
    Play(scene, {wheel});
    std::vector<Step> drags;
    for (std::size_t i = 1; i < buttons.size(); ++i) {
      drags.emplace_back([&, i] { Send(QEvent::MouseButtonPress, buttons[i - 1], 0); });
      drags.emplace_back([&, i] { Send(QEvent::MouseMove, buttons[i], 100); });
      drags.emplace_back([&, i] { Send(QEvent::MouseButtonRelease, buttons[i], 200); });
    }
    drags.insert(drags.end(),
                 {[] {}, [&] { EXPECT_EQ(Difference(before, State()), "") << scene.toStdString() << ": drags"; }});
    Play(scene, drags);
  }
}

TEST_F(GesturesTest, AHeldKeyActsOnce) {
  for (const QString& scene : kScenes) {
    std::set<QKeySequence> keys;
    Play(scene, {[&] {
           keys = {Qt::Key_Return, Qt::Key_Escape};
           for (const QShortcut* const shortcut : FrontWindow()->findChildren<QShortcut*>()) {
             if (static_cast<const QWidget*>(shortcut->parent())->isVisible()) {
               keys.insert(shortcut->key());
             }
           }
         }});
    for (const QKeySequence& key : keys) {
      const auto send = [&key](QEvent::Type type, int repeats) {
        for (int i = 0; i < std::max(repeats, 1); ++i) {
          qt_handleKeyEvent(FrontWindow()->windowHandle(), type, key[0].key(), key[0].keyboardModifiers(), {},
                            repeats > 0);
        }
      };
      QStringList once;
      QStringList held;
      Play(scene,
           {[&] { send(QEvent::KeyPress, 0); }, [&] { send(QEvent::KeyRelease, 0); }, [] {}, [&] { once = State(); }});
      const Step repeat = [&] { send(QEvent::KeyPress, 20); };  // three times: as often as in two seconds
      Play(scene, {[&] { send(QEvent::KeyPress, 0); }, repeat, repeat, repeat, [&] { send(QEvent::KeyRelease, 0); },
                   [] {}, [&] { held = State(); }});
      EXPECT_EQ(Difference(once, held), "") << scene.toStdString() << ": " << key.toString().toStdString();
    }
  }
}

}  // namespace
}  // namespace marlevo
