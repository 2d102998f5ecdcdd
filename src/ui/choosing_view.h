// A list or grid that tells what the operator chooses in it, and only that: the views' own signals also fire when the
// program itself adds, removes or selects rows, and a handler would then show a row that the operator did not ask for.
#pragma once

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <functional>
#include <utility>

namespace marlevo {

// What moving the current line by keys or by dragging does.
enum class Moving {
  kChooses,  // chooses every line on the way
  kOnly,     // chooses nothing: a press of the mouse, Enter or Space does
};

// View is a QAbstractItemView class whose rows are selected one at a time. The chosen row is the highlighted one. The
// current line, which has the frame of the focus, may be another one when moving does not choose or when the program
// moves it.
template <typename View>
class ChoosingView : public View {
 public:
  ChoosingView(QWidget* parent, Moving moving) : View(parent), moving_(moving) {}

  // `chosen` gets the row (from 0) that the operator chooses. Pressing the chosen row again counts as choosing it.
  void OnChosen(std::function<void(int row)> chosen) { chosen_ = std::move(chosen); }

  // -1 when no row is chosen.
  int ChosenRow() const {
    const QModelIndexList rows = View::selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
  }

  // What the operator reads in the middle of the view while it has at most `rows` rows.
  void SetPlaceholder(const QString& text, int rows = 0) {
    placeholder_ = text;
    placeholder_rows_ = rows;
    View::viewport()->update();
  }

  // Makes a row the current line and brings it into view, but chooses nothing.
  void MoveTo(int row) {
    View::selectionModel()->setCurrentIndex(View::model()->index(row, 0), QItemSelectionModel::NoUpdate);
    View::scrollTo(View::currentIndex());
  }

  // Does what a press on the row does.
  void Choose(int row) {
    Highlight(row);
    chosen_(row);
  }

  // Highlights a row without calling what OnChosen was given; -1 highlights none.
  void Highlight(int row) {
    View::selectionModel()->clear();
    if (row != -1) {
      View::selectionModel()->setCurrentIndex(View::model()->index(row, 0), kTheRow);
    }
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) {
      event->accept();
      return;
    }
    View::mousePressEvent(event);
    if (View::indexAt(event->pos()).isValid()) {
      chosen_(ChosenRow());
    }
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    if (moving_ == Moving::kOnly && event->buttons() != Qt::NoButton) {
      return;
    }
    const int before = ChosenRow();
    View::mouseMoveEvent(event);
    TellWhenOther(before);
  }

  void keyPressEvent(QKeyEvent* event) override {
    const int before = ChosenRow();
    const QModelIndex current = View::currentIndex();
    const bool chooses =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (moving_ == Moving::kOnly && chooses) {
      if (current.isValid()) {
        View::selectionModel()->setCurrentIndex(current, kTheRow);
        chosen_(current.row());
      }
    } else if (moving_ == Moving::kChooses && current.isValid() && before != current.row() &&
               event->key() == Qt::Key_Down) {
      // The Tab key or the program made the row current without choosing it: the first Down chooses it instead of
      // passing it.
      View::selectionModel()->select(current, kTheRow);
      TellWhenOther(before);
    } else {
      View::keyPressEvent(event);
      TellWhenOther(before);
    }
  }

  void paintEvent(QPaintEvent* event) override {
    View::paintEvent(event);
    if (View::model()->rowCount() <= placeholder_rows_) {
      QPainter painter(View::viewport());
      painter.setPen(View::palette().color(QPalette::PlaceholderText));
      const int margin = View::fontMetrics().height();
      painter.drawText(View::viewport()->rect().adjusted(margin, 0, -margin, 0), Qt::AlignCenter | Qt::TextWordWrap,
                       placeholder_);
    }
  }

  // Without regard to Shift and Ctrl, with which Qt would add rows to the selection or take rows from it.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override {
    const bool pressed = event != nullptr && event->type() == QEvent::MouseButtonPress;
    return index.isValid() && (moving_ == Moving::kChooses || pressed) ? kTheRow : QItemSelectionModel::NoUpdate;
  }

 private:
  static constexpr QItemSelectionModel::SelectionFlags kTheRow =
      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;

  void TellWhenOther(int before) {
    const int now = ChosenRow();
    if (now != -1 && now != before) {
      chosen_(now);
    }
  }

  Moving moving_;
  QString placeholder_;
  int placeholder_rows_ = 0;
  std::function<void(int)> chosen_ = [](int) {};
};

}  // namespace marlevo
