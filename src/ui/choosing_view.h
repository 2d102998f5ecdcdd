// A list or grid that tells what the operator chooses in it. The views' own signals also fire when the program adds,
// removes or selects rows, and then a row would be shown that nobody asked for.
#pragma once

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <functional>
#include <utility>

namespace marlevo {

// View is a QAbstractItemView class whose rows are selected one at a time. The selected row is always the current one.
template <typename View>
class OperatorChoice : public View {
 public:
  using View::View;

  // `chosen` gets the row (from 0) that the operator pressed with the left button, dragged to or went to by keys.
  // Pressing the selected row again counts as choosing it.
  void OnChosen(std::function<void(int row)> chosen) { chosen_ = std::move(chosen); }

  // -1 when no row is selected.
  int SelectedRow() const {
    const QModelIndexList rows = View::selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) {
      event->accept();
      return;
    }
    View::mousePressEvent(event);
    if (View::indexAt(event->pos()).isValid()) {
      chosen_(SelectedRow());
    }
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    const int before = SelectedRow();
    View::mouseMoveEvent(event);
    TellWhenOther(before);
  }

  void keyPressEvent(QKeyEvent* event) override {
    const int before = SelectedRow();
    const QModelIndex current = View::currentIndex();
    if (before == -1 && current.isValid() && event->key() == Qt::Key_Down) {
      // The focus came to this row without choosing it.
      View::selectionModel()->select(current, selectionCommand(current, event));
    } else {
      View::keyPressEvent(event);
    }
    TellWhenOther(before);
  }

  // Modifier keys neither add to the selection nor take from it.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent*) const override {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                           : QItemSelectionModel::NoUpdate;
  }

 private:
  void TellWhenOther(int before) {
    const int now = SelectedRow();
    if (now != -1 && now != before) {
      chosen_(now);
    }
  }

  std::function<void(int)> chosen_ = [](int) {};
};

}  // namespace marlevo
