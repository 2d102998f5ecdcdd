// A gesture of the hand acts once: double clicks on every button of every window and presses on whatever lies there
// afterwards, drags, held keys, the wheel. Each is done to the real program, and what can be seen and is stored
// afterwards is compared with what one plain click or key leaves. The times of presses are written into the events:
// nothing waits.
#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QShortcut>
#include <QWheelEvent>
#include <algorithm>
#include <set>

#include "board/program_fixture.h"

namespace marlevo {
namespace {

class GesturesTest : public ProgramFixture {};

// Milliseconds between the presses of a double click, taken in turn. The last is the longest there is.
constexpr int kBetweenPresses[] = {40, 150, 400};

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
