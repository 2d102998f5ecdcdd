#include "ui/question.h"

#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "ui/widgets.h"

namespace marlevo {

bool Question(QWidget* parent, const QString& text, const QString& title) {
  QMessageBox box(QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No, parent);
  box.setTextFormat(Qt::PlainText);
  // Qt's words for these two carry their key in brackets: 是(Y).
  box.button(QMessageBox::Yes)->setText("是");
  box.button(QMessageBox::No)->setText("否");
  for (const auto& [key, answer] : {std::pair(Qt::Key_Y, QMessageBox::Yes), std::pair(Qt::Key_N, QMessageBox::No)}) {
    PressByKey(*box.button(answer), key, box);
  }
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

void Notice(QWidget* parent, const QString& text, const QString& title) {
  QMessageBox box(QMessageBox::NoIcon, title, text, QMessageBox::Ok, parent);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

}  // namespace marlevo
