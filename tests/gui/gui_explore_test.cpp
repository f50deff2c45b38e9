// The desktop program explored as a user would, offscreen: zoom, pan, box
// zoom and reset on the plot with the pointer's reading; three overlaid runs
// with their legend; files dropped on the window; what is remembered.
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMimeData>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

#include "main_window.h"
#include "plot_view.h"
#include "render/plot_painter.h"
#include "support/picture_text.h"
#include "ui/form_ins.h"
#include "ui/form_option.h"
#include "ui/form_plot.h"
#include "ui/workbench.h"

using namespace voltrix;

namespace {

struct Program {
  MainWindow window;
  std::vector<std::string> messages;
  Program() {
    window.platform().messages.intercept = [this](const std::string& m) { messages.push_back(m); };
    window.show();
  }
  void menu(const char* name, const QString& file = {}) {
    if (file.isEmpty()) window.runCommand(name);
    else window.runFileCommand(name, file.toStdString());
    QCoreApplication::processEvents();
  }
  PlotView* plot() { return window.plotView(); }
  std::string recorded() { return test::PictureText(window.platform().plot.calls()); }
  // The data under a pixel of the plot as it is shown now.
  QPointF dataAt(QPointF pixel) {
    const PlotPresentation& p = plot()->presentation();
    const QRectF area = PictureArea(QRectF(plot()->rect()), p);
    double x = 0, y = 0;
    PixelToData(p.geometry.scale, area.width(), area.height(), pixel.x() - area.left(), pixel.y() - area.top(), x, y);
    return {x, y};
  }
  QPoint frameCentre() {
    const PlotPresentation& p = plot()->presentation();
    return FrameRect(PictureArea(QRectF(plot()->rect()), p), p.geometry).center().toPoint();
  }
  DataRect shown() { return window.workbench().formPlot().view().zoom.shown(); }
};

void Wheel(QWidget* w, QPoint at, int notches) {
  QWheelEvent e(at, w->mapToGlobal(at), QPoint(), QPoint(0, 120 * notches), Qt::NoButton, Qt::NoModifier,
                Qt::NoScrollPhase, false);
  QApplication::sendEvent(w, &e);
}

bool Near(QPointF a, QPointF b, const DataRect& scale) {
  return std::fabs(a.x() - b.x()) < 1e-6 * scale.width() && std::fabs(a.y() - b.y()) < 1e-6 * scale.height();
}

}  // namespace

class ExploreTest : public QObject {
  Q_OBJECT
  QTemporaryDir settings_;

 private slots:
  void initTestCase() { QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings_.path()); }

  void zoomPanBoxAndResetLeaveTheRecordedPictureAlone() {
    Program p;
    p.menu("mnuSimulate");
    PlotView* v = p.plot();
    QVERIFY(v && v->isVisible());
    p.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&p.window));
    v->setFocus();
    const std::string recorded = p.recorded();
    const QImage classic = v->grab().toImage();
    const DataRect frame = p.shown();

    // The wheel zooms about the pointer: what lies under it stays there.
    const QPoint at = p.frameCentre() + QPoint(30, -20);
    const QPointF under = p.dataAt(at);
    Wheel(v, at, 2);
    QCOMPARE(p.shown().width(), frame.width() * 0.64);
    QVERIFY(Near(p.dataAt(at), under, p.shown()));
    QTest::mouseMove(v, at);
    const QString reading = p.window.findChild<QLabel*>("PointerReading")->text();
    QVERIFY2(reading.startsWith(QString::asprintf("E = %.4f V    I = ", under.x())), qPrintable(reading));

    // A drag carries the data along with the pointer.
    const DataRect beforeDrag = p.shown();
    QTest::mousePress(v, Qt::LeftButton, {}, at);
    QTest::mouseMove(v, at + QPoint(40, 25));
    QTest::mouseRelease(v, Qt::LeftButton, {}, at + QPoint(40, 25));
    QVERIFY(Near(p.dataAt(at + QPoint(40, 25)), under, p.shown()));
    QCOMPARE(p.shown().width(), beforeDrag.width());

    // Shift and a drag: the box drawn becomes the window.
    const QPoint a = p.frameCentre() - QPoint(50, 30), b = p.frameCentre() + QPoint(60, 20);
    const QPointF da = p.dataAt(a), db = p.dataAt(b);
    QTest::mousePress(v, Qt::LeftButton, Qt::ShiftModifier, a);
    QTest::mouseMove(v, b);
    QTest::mouseRelease(v, Qt::LeftButton, Qt::ShiftModifier, b);
    const DataRect boxed = Spanned(da.x(), da.y(), db.x(), db.y());
    QVERIFY(std::fabs(p.shown().xmin - boxed.xmin) < 0.02 * boxed.width());
    QVERIFY(std::fabs(p.shown().ymax - boxed.ymax) < 0.02 * boxed.height());

    // Copy takes the view as shown, not the classic picture.
    p.menu("mnuCopyto");
    QVERIFY(QGuiApplication::clipboard()->image() != classic.convertToFormat(QGuiApplication::clipboard()->image().format()));

    // The keyboard: + zooms in, Home returns to the classic picture, pixel for pixel.
    const double width = p.shown().width();
    QTest::keyClick(v, Qt::Key_Plus);
    QCOMPARE(p.shown().width(), width * 0.8);
    QTest::keyClick(v, Qt::Key_Home);
    QVERIFY(!p.window.workbench().formPlot().view().zoom.zoomed());
    QCOMPARE(v->grab().toImage(), classic);
    QCOMPARE(p.recorded(), recorded);
    Wheel(v, at, 1);
    QTest::mouseDClick(v, Qt::LeftButton, {}, at);
    QCOMPARE(p.shown(), frame);
  }

  void threeOverlaidRunsShowALegendInColours() {
    Program p;
    Workbench& wb = p.window.workbench();
    wb.formOption().control("overlap").setValue(1);
    int drawnBusy = 0;  // the busy pointer stands while a run draws
    p.window.platform().plot.onShow = [&] {
      drawnBusy += QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
    };
    for (const char* rate : {"0.01", "0.1", "1"}) {
      wb.formIns().control("V").setText(rate);
      p.menu("mnuSimulate");
    }
    QCOMPARE(drawnBusy, 3);
    std::vector<std::string> legend;
    for (const LegendEntry& e : p.plot()->presentation().legend) legend.push_back(e.text);
    QCOMPARE(legend, (std::vector<std::string>{"LSV, 0.01 V/s, A+1e=B", "LSV, 0.1 V/s, A+1e=B", "LSV, 1 V/s, A+1e=B"}));
    const QImage shown = p.plot()->grab().toImage();
    int coloured = 0;
    for (int y = 0; y < shown.height(); ++y)
      for (int x = 0; x < shown.width(); ++x) {
        const QColor c = shown.pixelColor(x, y);
        coloured += std::abs(c.red() - c.blue()) > 80;
      }
    QVERIFY(coloured > 100);
    p.plot()->setFocus();
    QTest::keyClick(p.plot(), Qt::Key_L);
    QVERIFY(p.plot()->presentation().legend.empty());
  }

  void droppedFilesOpenAsTheirCommandsAndAreRemembered() {
    QTemporaryDir dir;
    const QString par = dir.filePath("run.par"), csv = dir.filePath("wave.csv");
    {
      Program p;
      p.window.workbench().formIns().control("Estep").setText("0.002");
      p.menu("mnuSimulate");
      p.menu("mnuSave", par);
      p.menu("mnuExport", csv);
    }
    QSettings(QSettings::UserScope, "Voltrix", QCoreApplication::applicationName()).clear();
    Program p;
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(par), QUrl::fromLocalFile(csv)});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&p.window, &enter);
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&p.window, &drop);
    QTRY_VERIFY(p.window.workbench().formPlot().view().rowLabels[1] == "wave.csv");
    QCOMPARE(p.window.workbench().formIns().control("Estep").text(), std::string("0.002"));
    p.window.window("FormPlot")->setGeometry(20, 30, 500, 260);
    p.window.close();

    Program again;
    auto* recent = again.window.findChild<QMenu*>("RecentFiles");
    QVERIFY(recent);
    QCOMPARE(recent->actions().at(0)->text(), QString("&1 wave.csv"));
    QCOMPARE(recent->actions().at(1)->text(), QString("&2 run.par"));
    again.menu("mnuImport", csv);
    QCOMPARE(again.window.window("FormPlot")->geometry(), QRect(20, 30, 500, 260));
  }

  void plotStatementOfTheCliSavesTheZoomedView() {
    QTemporaryDir dir;
    const QString svg = dir.filePath("zoom.svg");
    QProcess cli;
    cli.start(qEnvironmentVariable("VOLTRIX_CLI"), {"menu mnuSimulate", "zoom 0 0.2 -1e-4 1e-4", "plot " + svg});
    QVERIFY(cli.waitForFinished(60000));
    QCOMPARE(cli.exitCode(), 0);
    QFile file(svg);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY(text.contains(">0.15<"));  // a mark of the window, not of the classic axis
  }
};

QTEST_MAIN(ExploreTest)
#include "gui_explore_test.moc"
