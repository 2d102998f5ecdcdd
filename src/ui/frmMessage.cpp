#include "ui/frmMessage.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "ui/appearance.h"
#include "ui/widgets.h"

namespace marlevo {

frmMessage::frmMessage(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      lblMsg_(NewLabel(this, "lblMsg", {})) {
  setObjectName("frmMessage");
  setWindowTitle("提示訊息");
  lblMsg_->setAlignment(Qt::AlignCenter);
  lblMsg_->setTextFormat(Qt::PlainText);
  lblMsg_->setMinimumWidth(fontMetrics().height() * 12);
  QPushButton* const button = NewButton(this, "Command1", "關閉", Emphasis::kMain);
  connect(button, &QPushButton::clicked, this, &frmMessage::Command1_Click);

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(distances::kWide, distances::kWide, distances::kWide, distances::kWide);
  column->setSpacing(distances::kWide);
  column->addWidget(lblMsg_, 1);
  column->addWidget(button, 0, Qt::AlignHCenter);
  button->setFocus();
}

void frmMessage::SetText(const QString& text) {
  lblMsg_->setText(QString(text).replace("\r\n", "\n"));
}

void frmMessage::Command1_Click() {
  close();
}

void frmMessage::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Escape) {
    close();
  } else {
    QDialog::keyPressEvent(event);
  }
}

void ShowMessage(QWidget* parent, const QString& text) {
  frmMessage window(parent);
  window.SetText(text);
  window.exec();
}

}  // namespace marlevo
