// The yardstick of start_bench: the shortest program that shows a window. The window is as large as the board, because
// a larger window takes more memory and more time to paint.
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
