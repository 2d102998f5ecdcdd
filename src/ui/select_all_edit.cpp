#include "ui/select_all_edit.h"

namespace marlevo {

void SelectAllEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  // Queued: the mouse press that brought the focus is still being handled and would put the cursor where it hit.
  QMetaObject::invokeMethod(this, "selectAll", Qt::QueuedConnection);
}

}  // namespace marlevo
