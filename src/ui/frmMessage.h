// The shared message window: one line or two of text, and one button that closes it.
#pragma once

#include <QDialog>
#include <QString>

class QLabel;

namespace marlevo {

class frmMessage : public QDialog {
  Q_OBJECT

 public:
  explicit frmMessage(QWidget* parent);

  // CR LF shows as one line break.
  void SetText(const QString& text);

 protected:
  // Enter and Esc close the window wherever the focus is.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Command1_Click();

  QLabel* lblMsg_;
};

// Shows the text modally over `parent`; returns when the operator has closed the window.
void ShowMessage(QWidget* parent, const QString& text);

}  // namespace marlevo
