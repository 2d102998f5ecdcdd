// A bar of the board: a panel of buttons in rows, each with its key. Keys show in tooltips and in the hint line,
// never in a caption.
#pragma once

#include <QFrame>
#include <QKeySequence>

#include "ui/widgets.h"

class QGridLayout;

namespace marlevo {

class ButtonBar : public QFrame {
  Q_OBJECT

 public:
  // Of the bar's width; a button that does not fit into the row begins the next one.
  enum class Width { kQuarter = 1, kHalf = 2, kFull = 4 };

  ButtonBar(QWidget* parent, const QString& name);

  // Adds a button after the ones that are there. `key` and `tip` may be empty.
  QPushButton* Add(const QString& name, const QString& caption, const QKeySequence& key, const QString& tip,
                   Width width = Width::kHalf, Emphasis emphasis = Emphasis::kNormal);
  // Adds a label over the whole width.
  void AddNote(QLabel* note);

  // Changes a caption; the button keeps its key.
  static void SetCaption(QPushButton& button, const QString& caption);

  // "F2 組合   F3 重覆選號碼組合 ..."
  QString Hint() const;

 private:
  QGridLayout* grid_;
  int row_ = 0;
  int column_ = 0;
  QList<QPushButton*> buttons_;
};

}  // namespace marlevo
