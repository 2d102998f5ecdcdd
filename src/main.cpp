// Builds the services, shows the board and ends the program.
#include <QScreen>

#include "board/frmMarlevo.h"
#include "ui/application.h"

int main(int argc, char** argv) {
  marlevo::Application application(argc, argv);

  marlevo::frmMarlevo board({});
  QObject::connect(&board, &marlevo::frmMarlevo::Unloaded, [] { QCoreApplication::exit(0); });
  return application.Run([&board] {
    constexpr QSize kComfortable(1304, 800);
    const QSize available = QGuiApplication::primaryScreen()->availableSize();
    board.resize(kComfortable.boundedTo(available));
    if (available.width() <= kComfortable.width() || available.height() <= kComfortable.height()) {
      board.showMaximized();
    } else {
      board.show();
    }
    board.Form_Load();
  });
}
