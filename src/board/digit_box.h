// A tick box drawn as one cell of the digit panel; a click anywhere in the cell ticks it. A ticked digit shows by
// colour, by weight and by a check mark. Digits are half as large again as the board's other texts. All keys but Space
// are left to the panel.
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

 Q_SIGNALS:
  void GotFocus();

 protected:
  bool hitButton(const QPoint& position) const override;
  void nextCheckState() override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  Kind kind_;
};

}  // namespace marlevo
