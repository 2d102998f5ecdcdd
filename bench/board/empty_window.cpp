// The yardstick of start_bench: the shortest program that shows a window. As large as the board on the screen at the
// counter, with a window manager or without: a window's memory is part of its price.
#include <QApplication>
#include <QMainWindow>
#include <QScreen>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  window.resize(QSize(1304, 800).boundedTo(QGuiApplication::primaryScreen()->availableSize()));
  window.showMaximized();
  return QApplication::exec();
}
