// The busy notice: modeless, shown while a long operation runs in the interface thread. It lives as long as the object,
// so that an error on the way takes it down too.
#pragma once

#include <QDialog>
#include <QString>

namespace marlevo {

class frmMessage2 : public QDialog {
  Q_OBJECT

 public:
  explicit frmMessage2(QWidget* parent, const QString& text = QStringLiteral("資料產生中,請稍後 ..."));

  // Shows the notice and lets the event loop run until it is really on the screen (a tenth of a second at most).
  // Keys and clicks of the operator wait meanwhile.
  void ShowPainted();

 protected:
  void paintEvent(QPaintEvent* event) override;
  // Esc does not take a running operation's notice away.
  void reject() override {}

 private:
  bool painted_ = false;
};

}  // namespace marlevo
