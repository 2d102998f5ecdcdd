// From the operator's click to the painted window, offscreen, on the real board: the expansion of everything there is,
// and each filter over its 23,000 tickets.
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "board/frmMarlevo.h"
#include "support/offscreen.h"
#include "ui/application.h"

namespace {

constexpr int kRounds = 15;
constexpr double kExpansionLimit = 60;  // milliseconds
constexpr double kFilterLimit = 50;

using marlevo::frmMarlevo;

void Tick(frmMarlevo& board) {
  for (QCheckBox* const box : board.findChildren<QCheckBox*>()) {
    if (box->objectName().startsWith("chkPlay") || box->objectName().startsWith("chkNum")) {
      box->setChecked(true);
    }
  }
}

void Click(frmMarlevo& board, const char* button) {
  board.findChild<QPushButton*>(button)->click();
}

// A filter ends with a message window. It is closed as soon as it shows, when the board under it has been painted.
void ClickAndClose(frmMarlevo& board, const char* button) {
  QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
  Click(board, button);
}

bool Row(const char* name, double limit, const std::function<void()>& prepare, const std::function<void()>& act,
         frmMarlevo& board) {
  double best = 1e9;
  double first = 0;
  for (int round = 0; round < kRounds; ++round) {
    prepare();
    QApplication::processEvents();
    QElapsedTimer clock;
    clock.start();
    act();
    // What is still to be painted is painted now.
    QApplication::processEvents();
    board.repaint();
    const double milliseconds = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    first = round == 0 ? milliseconds : first;
    best = std::min(best, milliseconds);
  }
  std::printf("%-44s %8.1f %8.1f %8.0f%s\n", name, best, first, limit, best > limit ? "  OVER" : "");
  return best <= limit;
}

}  // namespace

int main(int argc, char** argv) {
  marlevo::bench::UseNoScreen();
  marlevo::Application application(argc, argv);
  frmMarlevo board({});
  board.Form_Load();
  board.resize(1366, 768);
  board.show();
  QApplication::processEvents();
  Tick(board);

  std::printf("%-44s %8s %8s %8s\n", "click to painted, ms", "best", "first", "limit");
  const auto expand = [&board] { Click(board, "cmdCombine"); };
  bool good = Row(
      "expansion of all kinds and columns", kExpansionLimit,
      [&board] {
        if (auto* const back = board.findChild<QPushButton*>("cmdBack"); back != nullptr) {
          back->click();
        }
      },
      expand, board);
  for (const char* const filter : {"cmdDel1", "cmdDel2", "cmdDel3", "cmdDel4", "cmdDel5", "cmdDel6"}) {
    good = Row(
               filter, kFilterLimit,
               [&] {
                 expand();
                 Click(board, "cmdDelete");
               },
               [&] { ClickAndClose(board, filter); }, board) &&
           good;
  }
  good = Row(
             "cmdCheck2", kFilterLimit,
             [&] {
               expand();
               Click(board, "cmdCheck");
             },
             [&] { Click(board, "cmdCheck2"); }, board) &&
         good;
  return good ? 0 : 1;
}
