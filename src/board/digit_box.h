// A tick box drawn as one cell of the digit panel: the whole cell is the target. A ticked digit shows by colour, by
// weight and by a check mark.
#pragma once

#include <QCheckBox>

namespace marlevo {

class DigitBox : public QCheckBox {
  Q_OBJECT

 public:
  enum class Kind {
    kDigit,  // holds a tick
    kAction  // acts on every click and does not stay ticked
  };

  DigitBox(QWidget* parent, const QString& name, const QString& caption, Kind kind);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool hitButton(const QPoint& position) const override;
  void nextCheckState() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  Kind kind_;
};

}  // namespace marlevo
