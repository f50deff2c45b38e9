// voltrix: the desktop program.
#include <QApplication>
#include <QStringList>
#include <QTimer>
#include <cstdlib>
#include <iostream>

#include "main_window.h"
#include "render/headless_qt.h"

int main(int argc, char** argv) {
  const bool display = std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY") || std::getenv("QT_QPA_PLATFORM");
  if (!display) {
    std::cerr << "voltrix: no display found. voltrix-cli runs the same commands without one "
                 "(voltrix-cli help).\n";
    return 2;
  }
  voltrix::PrepareHeadlessQt();
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Voltrix"));
  voltrix::MainWindow window;
  window.show();
  // Files named on the command line open as if dropped on the window.
  // --simulate: a simulation of each parameter file named, or of the
  // default forms, as a click on "&Simulate" would (used for the screenshots).
  QStringList files;
  for (const QString& argument : QApplication::arguments().mid(1))
    if (!argument.startsWith('-')) files << argument;
  const bool simulate = QApplication::arguments().contains(QStringLiteral("--simulate"));
  if (simulate || !files.isEmpty())
    QTimer::singleShot(0, &window, [&window, files, simulate] { window.openFiles(files, simulate); });
  return app.exec();
}
