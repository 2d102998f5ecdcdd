// A bar of the board: buttons in rows, most of them with a key of their own. The keys show in the buttons' tooltips and
// in the hint line, never in a caption. A key presses its button when it goes down and not again while it is held.
#pragma once

#include <QFrame>
#include <QKeySequence>

#include "ui/widgets.h"

class QGridLayout;

namespace marlevo {

class ButtonBar : public QFrame {
  Q_OBJECT

 public:
  enum class Shape {
    kPanel,  // rows of four quarters on a panel
    kLine    // one row without a panel, which ignores the buttons' Width
  };
  // How much of a panel's row a button takes. A button that does not fit into the row begins the next one.
  enum class Width { kQuarter = 1, kHalf = 2, kFull = 4 };

  ButtonBar(QWidget* parent, const QString& name, Shape shape);

  // Adds a button behind the others. `key` and `tip` may be empty.
  QPushButton* Add(const QString& name, const QString& caption, const QKeySequence& key, const QString& tip,
                   Width width = Width::kHalf, Emphasis emphasis = Emphasis::kNormal);
  // Adds a label in a row of its own.
  void AddNote(QLabel* note);

  // Makes the bar that many times as large; see board/growth.h. The other texts follow the font of the board.
  void SetGrowth(double growth);

  // The keys and what they do, for the hint line: "F2 組合   F3 重覆選號碼組合 ..."
  QString Hint() const;

 private:
  struct Key {
    QString text;  // "F2"
    const QPushButton* button;
  };

  Shape shape_;
  QGridLayout* grid_;
  QPushButton* main_ = nullptr;  // the main action, if the bar has one
  int row_ = 0;
  int column_ = 0;
  QList<Key> keys_;
};

}  // namespace marlevo
