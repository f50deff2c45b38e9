#include "picture_file.h"

#include <QFileInfo>
#include <functional>
#include <QGuiApplication>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "headless_qt.h"
#include "picture_painter.h"
#include "plot_painter.h"

namespace voltrix {

namespace {

constexpr int kDpi = 96;

// QPainter needs an application object for its fonts. Programs without one
// (the CLI) get one on the offscreen platform, which needs no display.
bool EnsureApplication() {
  if (QCoreApplication::instance()) return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  PrepareHeadlessQt();
  static int argc = 1;
  static char name[] = "voltrix";
  static char* argv[] = {name, nullptr};
  // Kept for the life of the process: destroying it among static objects at
  // exit would outlive the platform plugin.
  static QGuiApplication* app = new QGuiApplication(argc, argv);
  return app != nullptr;
}

using Painting = std::function<void(QPainter&, const QRectF&)>;

std::string WritePicture(const Painting& paint, const std::string& path, PictureSize size) {
  if (size.width <= 0 || size.height <= 0) return "The picture has no size";
  if (!EnsureApplication()) return "Pictures need a graphical application object";
  const QString file = QString::fromStdString(path);
  const QString ext = QFileInfo(file).suffix().toLower();
  const QRectF area(0, 0, size.width, size.height);
  if (ext == "png") {
    QImage image(size.width, size.height, QImage::Format_ARGB32_Premultiplied);
    image.setDotsPerMeterX(qRound(kDpi / 0.0254));
    image.setDotsPerMeterY(qRound(kDpi / 0.0254));
    {
      QPainter painter(&image);
      paint(painter, area);
    }
    if (!image.save(file, "PNG")) return "Cannot write " + path;
    return {};
  }
  if (ext == "svg") {
    QSvgGenerator svg;
    svg.setFileName(file);
    svg.setSize(QSize(size.width, size.height));
    svg.setViewBox(area);
    svg.setResolution(kDpi);
    svg.setTitle(QStringLiteral("Plot"));
    QPainter painter;
    if (!painter.begin(&svg)) return "Cannot write " + path;
    paint(painter, area);
    painter.end();
    return {};
  }
  if (ext == "pdf") {
    QPdfWriter pdf(file);
    pdf.setResolution(kDpi);
    pdf.setPageSize(QPageSize(QSizeF(size.width * 72.0 / kDpi, size.height * 72.0 / kDpi), QPageSize::Point));
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    pdf.setTitle(QStringLiteral("Plot"));
    QPainter painter;
    if (!painter.begin(&pdf)) return "Cannot write " + path;
    const QRect page = painter.viewport();
    paint(painter, QRectF(page));
    painter.end();
    return {};
  }
  return "Unknown picture type \"" + ext.toStdString() + "\": use .png, .svg or .pdf";
}

}  // namespace

std::string WritePictureFile(const std::vector<DrawCall>& calls, const std::string& path, PictureSize size) {
  return WritePicture([&calls](QPainter& p, const QRectF& area) { PaintPicture(p, area, calls); }, path, size);
}

std::string WritePictureFile(const PlotPresentation& plot, const std::string& path, PictureSize size) {
  return WritePicture([&plot](QPainter& p, const QRectF& area) { PaintPlot(p, area, plot); }, path, size);
}

}  // namespace voltrix

// The system's font configuration library keeps caches that it never frees;
// the leak checker of sanitizer builds is told so. Unused elsewhere.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
