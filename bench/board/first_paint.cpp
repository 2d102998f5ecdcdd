// Preloaded into a Qt program by start_bench: stands before Qt's own function that brings a painted window to the
// screen and writes a line to the standard output each time it has done so. Qt's log would say the same, but writes
// about every widget and so slows down the program with more of them.
#include <dlfcn.h>
#include <unistd.h>

#include <QBackingStore>
#include <QRegion>

void QBackingStore::flush(const QRegion& region, QWindow* window, const QPoint& offset) {
  // On this system a member function is called like a function that takes the object first.
  using Flush = void (*)(QBackingStore*, const QRegion&, QWindow*, const QPoint&);
  static const auto original =
      reinterpret_cast<Flush>(dlsym(RTLD_NEXT, "_ZN13QBackingStore5flushERK7QRegionP7QWindowRK6QPoint"));
  original(this, region, window, offset);
  if (write(STDOUT_FILENO, "painted\n", 8) != 8) {
    _exit(1);
  }
}
