// The picture painter and the picture files, and "plot FILE" of the CLI.
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <cmath>

#include "model/headless_platform.h"
#include "render/picture_file.h"
#include "render/picture_painter.h"
#include "ui/plot_display_list.h"
#include "ui/plot_engine.h"
#include "ui/workbench.h"

using namespace voltrix;

namespace {

bool Dark(QRgb c) { return qGray(c) < 128; }

// Dark pixels in a column x between rows y0 and y1.
int DarkInColumn(const QImage& img, int x, int y0, int y1) {
  int n = 0;
  for (int y = y0; y <= y1; ++y) n += Dark(img.pixel(x, y));
  return n;
}

int DarkInRow(const QImage& img, int y, int x0, int x1) {
  int n = 0;
  for (int x = x0; x <= x1; ++x) n += Dark(img.pixel(x, y));
  return n;
}

// A plotted peak of 3.2e-5 over -0.3..0.3 V: frame from -1e-5 to 4e-5.
std::vector<DrawCall> PeakPicture() {
  HeadlessPlatform platform;
  Workbench wb(platform.platform());
  wb.experiment.First = 1;
  wb.experiment.Last = 61;
  wb.experiment.NCurves = 1;
  for (int i = 1; i <= 61; ++i) {
    const double x = 0.3 - 0.01 * (i - 1);
    wb.store.XData(i) = x;
    wb.store.YData(1, i) = 3.2e-5 * std::exp(-x * x / 0.005);
  }
  PlotCurves(wb);
  return LastPicture(platform.plot.calls);
}

QByteArray Head(const QString& path, int n) {
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly)) return {};
  return f.read(n);
}

}  // namespace

class RenderTest : public QObject {
  Q_OBJECT
 private slots:
  // The frame's edges land where the scale puts them: 1/12 of the width in
  // from each side (margins of 10 % of the X range) and, vertically, 1.5 of
  // the 8.3 decades of the scale below the top.
  void frameLandsWhereTheScalePutsIt() {
    const int w = 1200, h = 830;
    QImage img(w, h, QImage::Format_ARGB32_Premultiplied);
    {
      QPainter p(&img);
      PaintPicture(p, QRectF(0, 0, w, h), PeakPicture());
    }
    const int left = w / 12, right = w - w / 12;
    const int top = qRound(h * 1.5 / 8.3), bottom = qRound(h * 6.5 / 8.3);
    const int mid = (top + bottom) / 2;
    QVERIFY(DarkInColumn(img, left, mid - 20, mid + 20) + DarkInColumn(img, left - 1, mid - 20, mid + 20) > 30);
    QVERIFY(DarkInColumn(img, right, mid - 20, mid + 20) + DarkInColumn(img, right - 1, mid - 20, mid + 20) > 30);
    QVERIFY(DarkInRow(img, top, w / 2 - 200, w / 2 - 100) + DarkInRow(img, top - 1, w / 2 - 200, w / 2 - 100) > 80);
    // Outside the frame, beside it: background (labels stand elsewhere).
    QCOMPARE(DarkInColumn(img, w / 24, mid - 20, mid + 20), 0);
    // The curve's top, 3.2 of the 8.3 decades up from the frame's lower edge
    // at the centre of the X range: the peak box is drawn there.
    const int peakY = qRound(h * (1.5 + 0.8) / 8.3);
    QVERIFY(DarkInRow(img, peakY, w / 2 - 10, w / 2 + 10) + DarkInRow(img, peakY + 1, w / 2 - 10, w / 2 + 10) +
                DarkInRow(img, peakY - 1, w / 2 - 10, w / 2 + 10) > 0);
  }

  // Manual limits far inside the data: lines that reach millions of pixels
  // beyond the window are still drawn along their true course.
  void farLinesAreClippedNotLost() {
    const int w = 400, h = 200;
    QImage img(w, h, QImage::Format_ARGB32_Premultiplied);
    const std::vector<DrawCall> calls = {{"scale", {0, 1, 1, 0}, {}},
                                         {"line", {0.5f, -1e7f, 0.5f, 1e7f}, {}},          // vertical through x = 1/2
                                         {"line", {-1e6f, -999999.75f, 1e6f, 1000000.25f}, {}},  // y = x + 1/4
                                         {"box", {0.75f, -1e9f, 1e9f, 1e9f}, {}}};       // only its left side shows
    {
      QPainter p(&img);
      PaintPicture(p, QRectF(0, 0, w, h), calls);
    }
    QVERIFY(DarkInColumn(img, w / 2, 0, h - 1) + DarkInColumn(img, w / 2 - 1, 0, h - 1) >= h - 2);
    QVERIFY(DarkInColumn(img, 3 * w / 4, 0, h - 1) + DarkInColumn(img, 3 * w / 4 - 1, 0, h - 1) >= h - 2);
    // y = x + 1/4 at x = 1/4 is y = 1/2: the middle row, a quarter across.
    QVERIFY(DarkInRow(img, h / 2, w / 4 - 3, w / 4 + 3) + DarkInRow(img, h / 2 - 1, w / 4 - 3, w / 4 + 3) > 0);
    QCOMPARE(DarkInRow(img, h / 2, w / 8 - 3, w / 8 + 3), 0);
  }

  void filesOfEachTypeAreWritten() {
    QTemporaryDir dir;
    const auto picture = PeakPicture();
    const QString png = dir.filePath("p.png"), svg = dir.filePath("p.svg"), pdf = dir.filePath("p.pdf");
    QCOMPARE(QString::fromStdString(WritePictureFile(picture, png.toStdString())), QString());
    QCOMPARE(QString::fromStdString(WritePictureFile(picture, svg.toStdString())), QString());
    QCOMPARE(QString::fromStdString(WritePictureFile(picture, pdf.toStdString())), QString());
    QImage img(png);
    QCOMPARE(img.size(), QSize(800, 450));
    QVERIFY(Head(svg, 200).contains("<svg"));
    QVERIFY(Head(pdf, 5).startsWith("%PDF"));
    QFile svgFile(svg);
    QVERIFY(svgFile.open(QIODevice::ReadOnly));
    const QByteArray text = svgFile.readAll();
    QVERIFY(text.contains("E /V"));
    QVERIFY(text.contains("I /A  1E-5"));

    const std::string bad = WritePictureFile(picture, dir.filePath("p.bmpx").toStdString());
    QVERIFY(QString::fromStdString(bad).contains("bmpx"));
    QVERIFY(!WritePictureFile(picture, "/nonexistent-dir/p.png").empty());
  }

  void cliPlotWritesTheCurveFrameAndLabels() {
    const QString cli = qEnvironmentVariable("VOLTRIX_CLI");
    if (cli.isEmpty()) QSKIP("VOLTRIX_CLI is not set");
    QTemporaryDir dir;
    const QString out = dir.filePath("out.png");
    QProcess p;
    p.start(cli, {"menu mnuSimulate", "plot " + out});
    QVERIFY(p.waitForFinished(120000));
    QCOMPARE(p.exitCode(), 0);
    QImage img(out);
    QVERIFY(!img.isNull());
    // Frame: the long dark runs at 1/12 and 11/12 of the width.
    const int mid = img.height() / 2;
    QVERIFY(DarkInColumn(img, img.width() / 12, mid - 10, mid + 10) + DarkInColumn(img, img.width() / 12 - 1, mid - 10, mid + 10) > 15);
    // Labels and unit line: ink in the top-left corner, above the frame.
    int corner = 0;
    for (int y = 0; y < 14; ++y) corner += DarkInRow(img, y, 0, img.width() / 4);
    QVERIFY(corner > 10);

    const QString missing = dir.filePath("none.png");
    QProcess again;
    again.start(cli, {"plot"});
    QVERIFY(again.waitForFinished(30000));
    QVERIFY(again.exitCode() != 0);
  }

  // Labels printed at one corner (the lowest Y label beside the first X
  // label) must not share ink: painted together they blacken exactly the
  // pixels they blacken apart. Labels on lines of their own never move.
  void labelsAtOneCornerDoNotOverlap() {
    auto ink = [](const std::vector<std::pair<float, std::string>>& prints) {
      std::vector<DrawCall> calls = {{"scale", {0, 0, 393, 178}, {}}};
      for (const auto& [y, text] : prints) {
        calls.push_back({"textpos", {200, y}, {}});
        calls.push_back({"print", {}, text});
      }
      QImage img(393, 178, QImage::Format_ARGB32);
      QPainter painter(&img);
      PaintPicture(painter, QRectF(0, 0, 393, 178), calls);
      painter.end();
      int n = 0;
      for (int y = 0; y < img.height(); ++y) n += DarkInRow(img, y, 0, img.width() - 1);
      return n;
    };
    const int x = ink({{100, "0.3"}}), y = ink({{100, "-1"}});
    QVERIFY(x > 0 && y > 0);
    QCOMPARE(ink({{100, "0.3"}, {100, "-1"}}), x + y);
    QCOMPARE(ink({{20, "0.3"}, {100, "-1"}}), x + y);
    QCOMPARE(ink({{100, "-1"}, {100, "-1"}, {100, "-1"}}), 3 * y);
  }
};

QTEST_MAIN(RenderTest)
#include "gui_render_test.moc"
