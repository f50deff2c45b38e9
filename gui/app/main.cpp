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
  // --simulate: start with one simulation of the default forms, as a first
  // click on "&Simulate" would (used for the screenshot).
  if (QApplication::arguments().contains(QStringLiteral("--simulate")))
    QTimer::singleShot(0, &window, [&window] { window.runCommand("mnuSimulate"); });
  return app.exec();
}
