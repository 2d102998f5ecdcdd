// The busy notice: a modeless window, shown while a long operation runs in the interface thread. The operation keeps it
// as a local object, so that the notice goes too when an exception ends the operation.
#pragma once

#include <QDialog>
#include <QString>

namespace marlevo {

class frmMessage2 : public QDialog {
  Q_OBJECT

 public:
  explicit frmMessage2(QWidget* parent, const QString& text = QStringLiteral("資料產生中,請稍後 ..."));

  // Shows the notice and lets the event loop run until the notice is painted, a tenth of a second at most. Keys and
  // clicks of the operator wait meanwhile.
  void ShowPainted();

 protected:
  void paintEvent(QPaintEvent* event) override;
  // Does nothing: Esc must not close the notice while the operation runs.
  void reject() override {}

 private:
  bool painted_ = false;
};

}  // namespace marlevo
