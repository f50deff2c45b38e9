#include "qt_platform.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QInputDialog>
#include <QMessageBox>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStringList>
#include <QTime>

#include "render/picture_file.h"
#include "render/picture_painter.h"
#include "render/plot_painter.h"

namespace voltrix {

namespace {
// A dialog asks for the user: while it is open the busy pointer of a running
// command is lifted, and put back afterwards.
class PointerLift {
 public:
  PointerLift() {
    while (QApplication::overrideCursor()) {
      QApplication::restoreOverrideCursor();
      ++lifted_;
    }
  }
  ~PointerLift() {
    for (int i = 0; i < lifted_; ++i) QApplication::setOverrideCursor(Qt::WaitCursor);
  }

 private:
  int lifted_ = 0;
};
}  // namespace

void QtMessageBox::show(const std::string& text) {
  ++shownCount;
  if (intercept) return intercept(text);
  const PointerLift lift;
  QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Voltrix"), QString::fromStdString(text), QMessageBox::Ok,
                  parent.data());
  box.exec();
}

QString QtNameFilter(const std::string& filter) {
  const QStringList parts = QString::fromStdString(filter).split('|');
  QStringList filters;
  for (int i = 0; i + 1 < parts.size(); i += 2) {
    QString patterns = parts[i + 1].trimmed();
    patterns.replace(';', ' ');
    const QString label = parts[i].trimmed();
    // A label that already shows its patterns ("Text (*.txt)") is kept as it is.
    filters << (label.endsWith("(" + patterns + ")") ? label : label + " (" + patterns + ")");
  }
  if (parts.size() % 2 == 1 && !parts.back().isEmpty()) filters << parts.back();
  return filters.join(QStringLiteral(";;"));
}

std::optional<std::string> QtFileDialog::ask(DialogMode mode, const std::string& filter) {
  std::optional<std::string> file;
  if (nextAnswer) {
    file.swap(nextAnswer);
  } else if (intercept) {
    file = intercept(mode, filter);
  } else {
    const PointerLift lift;
    const QString qfilter = QtNameFilter(filter);
    const QString name = mode == DialogMode::Save ? QFileDialog::getSaveFileName(parent.data(), QString(), folder, qfilter)
                                                  : QFileDialog::getOpenFileName(parent.data(), QString(), folder, qfilter);
    if (!name.isEmpty()) file = name.toStdString();
  }
  if (file) {
    folder = QFileInfo(QString::fromStdString(*file)).absolutePath();
    if (onAnswer) onAnswer(QString::fromStdString(*file));
  }
  return answered(file);
}

std::optional<int> QtCycleChoice::choose(const std::vector<std::string>& cycles, int suggested) {
  if (intercept) return intercept(cycles, suggested);
  const PointerLift lift;
  QStringList items;
  // Numbered, so that two cycles described alike stay apart.
  for (const std::string& c : cycles) items << QString::number(items.size() + 1) + ")  " + QString::fromStdString(c);
  bool ok = false;
  const QString picked = QInputDialog::getItem(parent.data(), QStringLiteral("Import Data"),
                                               QStringLiteral("The file holds several cycles. Import:"), items,
                                               suggested, false, &ok);
  if (!ok) return std::nullopt;
  const int index = static_cast<int>(items.indexOf(picked));
  if (index < 0) return std::nullopt;
  return index;
}

double QtClock::seconds() { return QTime::currentTime().msecsSinceStartOfDay() / 1000.0; }

void QtPointer::set(int shape) {
  const bool busy = shape == kHourglass;
  if (busy == busy_) return;
  busy_ = busy;
  if (busy) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

namespace {
void PaintShown(QPainter& painter, const QRectF& area, const std::function<PlotPresentation()>& present,
                const std::vector<DrawCall>& calls) {
  if (present) {
    PaintPlot(painter, area, present());
  } else {
    PaintPicture(painter, area, calls);
  }
}
}  // namespace

QSize QtPictureOutput::size() const {
  const QSize s = screenSize ? screenSize() : QSize();
  // A plot window never shown: its client area at 96 dots per inch.
  return s.isValid() && !s.isEmpty() ? s : QSize(5895 / 15, 2670 / 15);
}

void QtPictureOutput::copyToClipboard() {
  QClipboard* clipboard = QGuiApplication::clipboard();
  clipboard->clear();
  QImage image(size(), QImage::Format_ARGB32_Premultiplied);
  {
    QPainter painter(&image);
    PaintShown(painter, QRectF(QPointF(0, 0), QSizeF(image.size())), present, picture_.calls());
  }
  clipboard->setImage(image);
}

void QtPictureOutput::print() {
  const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
  if (printer.isNull()) {
    const auto file = files_.ask(DialogMode::Save, "PDF file (*.pdf)|*.pdf");
    if (!file) return;
    const PictureSize pixels{size().width(), size().height()};
    const std::string error = present ? WritePictureFile(present(), *file, pixels) : WritePictureFile(picture_.calls(), *file, pixels);
    if (!error.empty()) messages_.show(error);
    return;
  }
  QPrinter out(printer, QPrinter::HighResolution);
  QPainter painter;
  if (!painter.begin(&out)) {
    messages_.show("The printer cannot be opened.");
    return;
  }
  // The picture keeps the proportions it has on screen, as large as the page allows.
  const QRectF page = painter.viewport();
  const QSizeF fitted = QSizeF(size()).scaled(page.size(), Qt::KeepAspectRatio);
  PaintShown(painter, QRectF(page.topLeft(), fitted), present, picture_.calls());
  painter.end();
}

void QtFitProgress::begin() {
  stop_ = false;
  running_ = true;
  qApp->installEventFilter(this);
  if (showStatus) showStatus(QStringLiteral("Fitting... (Esc stops the fit)"));
}

void QtFitProgress::report(const FitProgressReport& p) {
  QString text = QStringLiteral("Fitting");
  if (p.starts > 1) text += QStringLiteral(", start %1 of %2").arg(p.start).arg(p.starts);
  text += QStringLiteral(", pass %1: least square = %2 (Esc stops the fit)").arg(p.pass).arg(p.leastSquare, 0, 'g', 6);
  if (showStatus) showStatus(text);
  QCoreApplication::processEvents();
}

bool QtFitProgress::stopRequested() {
  QCoreApplication::processEvents();
  return stop_;
}

void QtFitProgress::end() {
  running_ = false;
  qApp->removeEventFilter(this);
  if (showStatus) showStatus(stop_ ? QStringLiteral("Fit stopped: the values are the best found so far.") : QString());
}

bool QtFitProgress::eventFilter(QObject* watched, QEvent* event) {
  // A message box shown during the fit must still take its click.
  if (!running_ || QApplication::activeModalWidget()) return QObject::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) stop_ = true;
      return true;
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
      return true;
    default:
      return QObject::eventFilter(watched, event);
  }
}

}  // namespace voltrix
