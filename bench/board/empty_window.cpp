// The yardsticks of start_bench: the shortest program that shows a window and, with an argument, the shortest that
// shows this text in it. Maximized, as the board is on the screen at the counter: a window's memory is part of its
// price.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  if (argc > 1) {
    window.setCentralWidget(new QLabel(QString::fromLocal8Bit(argv[1])));
  }
  window.showMaximized();
  return QApplication::exec();
}
