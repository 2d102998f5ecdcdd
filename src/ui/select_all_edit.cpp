#include "ui/select_all_edit.h"

namespace marlevo {

void SelectAllEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  // After the mouse press that brought the focus, which would put the cursor where it hit.
  QMetaObject::invokeMethod(this, "selectAll", Qt::QueuedConnection);
}

}  // namespace marlevo
