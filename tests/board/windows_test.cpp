// A walk through all windows: what can be seen in each, read aloud, reached and copied by keys, and whether it fits the
// screen. scripts/pictures does the last on real screens.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <cmath>

#include "board/program_fixture.h"
#include "ui/manual.h"

namespace marlevo {
namespace {

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

// As the accessibility guidelines of the web define it: 1 for the same colour, 21 for black on white.
double Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one) + 0.05;
  const double b = Luminance(other) + 0.05;
  return std::max(a / b, b / a);
}

// Boxes, lists and grids; not the box that is a part of a drop-down list.
bool TakesText(const QWidget& widget) {
  return (qobject_cast<const QLineEdit*>(&widget) != nullptr && qobject_cast<QComboBox*>(widget.parent()) == nullptr) ||
         qobject_cast<const QComboBox*>(&widget) != nullptr ||
         qobject_cast<const QAbstractItemView*>(&widget) != nullptr;
}

QRect Within(const QWidget& window, const QWidget& widget) {
  return {widget.mapTo(&window, QPoint(0, 0)), widget.size()};
}

QWidgetList Visible(const QWidget& window) {
  QWidgetList visible;
  for (QWidget* const widget : window.findChildren<QWidget*>()) {
    if (widget->isVisible() && !widget->visibleRegion().isEmpty() && widget->window() == &window) {
      visible += widget;
    }
  }
  return visible;
}

std::string Called(const QString& scene, const QWidget& widget) {
  return (scene + ": " + widget.objectName() + ' ' + widget.metaObject()->className()).toStdString();
}

class WindowsTest : public ProgramFixture {
 protected:
  // Does `look` in every window.
  void Walk(const std::function<void(const QString& scene, QWidget& window)>& look) {
    for (const QString& scene : kScenes) {
      Play(
          scene, {[&] {
            QWidget& window = *FrontWindow();
            QApplication::setActiveWindow(&window);  // without a window manager the busy notice leaves no window active
            look(scene, window);
          }});
    }
  }
};

TEST_F(WindowsTest, WhateverTheTabKeyReachesShowsTheFocus) {
  int reached = 0;
  Walk([&reached](const QString& scene, QWidget& window) {
    QWidget* const first = window.focusWidget();
    ASSERT_NE(first, nullptr) << scene.toStdString();
    do {
      QWidget* const widget = window.focusWidget();
      ASSERT_TRUE(widget->hasFocus());
      const QRect place = Within(window, *widget) & window.rect();
      const QImage with = window.grab(place).toImage();
      widget->clearFocus();
      const QImage without = window.grab(place).toImage();
      widget->setFocus();
      int changed = 0;
      for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
          changed += Contrast(with.pixelColor(x, y), without.pixelColor(x, y)) >= 3 ? 1 : 0;
        }
      }
      EXPECT_GT(changed, 2 * std::min(place.width(), place.height())) << Called(scene, *widget);
      ++reached;
      QTest::keyClick(widget, Qt::Key_Tab);
    } while (window.focusWidget() != first);
  });
  EXPECT_GT(reached, 100);
}

TEST_F(WindowsTest, EverythingHasContrastANameAndAPlaceInTheManual) {
  QFile manual(MANUAL);
  ASSERT_TRUE(manual.open(QFile::ReadOnly));
  const QStringList lines = QString::fromUtf8(manual.readAll()).split('\n');
  Walk([&lines](const QString& scene, QWidget& window) {
    EXPECT_FALSE(window.windowIcon().isNull()) << scene.toStdString();
    const QString section = ManualSection(window);
    EXPECT_TRUE(lines.contains("## " + section) || lines.contains("### " + section))
        << scene.toStdString() << ": " << section.toStdString();
    const QImage picture = window.grab().toImage();
    for (const QWidget* const widget : Visible(window)) {
      const QPalette palette = widget->palette();
      for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Disabled}) {
        EXPECT_GE(
            Contrast(palette.color(group, widget->foregroundRole()), palette.color(group, widget->backgroundRole())),
            4.5)
            << Called(scene, *widget);
      }
      const auto* const button = qobject_cast<const QPushButton*>(widget);
      const QPoint edge(Within(window, *widget).left(), Within(window, *widget).center().y());
      if (widget->isEnabled() && (button != nullptr || TakesText(*widget)) && picture.rect().contains(edge) &&
          edge.x() > 0) {
        EXPECT_GE(Contrast(picture.pixelColor(edge), picture.pixelColor(edge - QPoint(1, 0))), 3)
            << Called(scene, *widget);
      }
      if (TakesText(*widget)) {
        QAccessibleInterface* const aloud = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
        EXPECT_NE(aloud->text(QAccessible::Name).toStdString(), "") << Called(scene, *widget);
      }
    }
  });
}

TEST_F(WindowsTest, CtrlCCopiesRows) {
  int copied = 0;
  Walk([&copied](const QString& scene, QWidget& window) {
    for (QWidget* const widget : Visible(window)) {
      auto* const view = qobject_cast<QAbstractItemView*>(widget);
      if (view == nullptr || view->model()->rowCount() == 0 || view->focusPolicy() == Qt::NoFocus) {
        continue;
      }
      QString row;
      for (int column = 0; column < view->model()->columnCount(); ++column) {
        row += view->model()->index(0, column).data().toString() +
               (column + 1 < view->model()->columnCount() ? '\t' : '\n');
      }
      view->setFocus();
      view->selectionModel()->select(view->model()->index(0, 0),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
      QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
      EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), row.toStdString()) << Called(scene, *view);
      ++copied;
    }
  });
  EXPECT_GT(copied, 10);
}

// Run by scripts/pictures on a screen with a window manager and a task bar. A picture of the screen with each window is
// left in the folder MARLEVO_PICTURES.
TEST_F(WindowsTest, EveryWindowFitsTheScreenWithAllItsButtons) {
  Walk([](const QString& scene, QWidget& window) {
    const QWindow& frame = *window.windowHandle();
    // The window manager frames a window a moment after the window is shown.
    EXPECT_TRUE(QTest::qWaitFor([&frame] { return frame.frameMargins().top() > 0; }, 60'000)) << scene.toStdString();
    QScreen& screen = *window.screen();
    // On a scaled screen the frame's parts are rounded one by one.
    EXPECT_TRUE(screen.availableGeometry().adjusted(-1, -1, 1, 1).contains(frame.frameGeometry()))
        << scene.toStdString() << ": " << frame.frameGeometry().width() << " x " << frame.frameGeometry().height();
    for (const QPushButton* const button : window.findChildren<QPushButton*>()) {
      EXPECT_TRUE(button->window() != &window || !button->isVisible() ||
                  button->visibleRegion().boundingRect() == button->rect())
          << Called(scene, *button);
    }
    window.repaint();
    const QString name = scene.isEmpty() ? "frmMarlevo" : QString(scene).replace(' ', '-');
    EXPECT_TRUE(screen.grabWindow(0).save(qEnvironmentVariable("MARLEVO_PICTURES") + '/' + name + ".png"));
  });
}

}  // namespace
}  // namespace marlevo
