// What only the desktop program's widgets can show, on the offscreen
// platform: the menu tree following the model, typing into bound boxes, a
// simulation drawn where the scale puts it, and the picture files.
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QPainter>
#include <QShortcut>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QtTest>

#include "main_window.h"
#include "model/number_format.h"
#include "plot_view.h"
#include "render/picture_file.h"
#include "render/picture_painter.h"
#include "user_guide.h"
#include "ui/form_option.h"
#include "ui/form_tech.h"
#include "ui/form_ins.h"
#include "ui/workbench.h"

using namespace voltrix;

namespace {

int DarkPixels(const QImage& img, const QRect& r) {
  int n = 0;
  for (int y = r.top(); y <= r.bottom(); ++y)
    for (int x = r.left(); x <= r.right(); ++x) n += qGray(img.pixel(x, y)) < 128;
  return n;
}

}  // namespace

class GuiTest : public QObject {
  Q_OBJECT
 private slots:
  void menusAndBoxesFollowTheModel() {
    MainWindow window;
    window.show();
    QCOMPARE(window.menuBar()->actions().size(), 6);  // File, Input, Run, Display, Analysis, Help
    QVERIFY(!window.action("mnuDisplay")->isEnabled());
    window.action("mnuMechamism")->trigger();
    auto* digital = window.window("FormMech")->widget()->findChild<QCheckBox*>("CheckDigital");
    QTest::mouseClick(digital, Qt::LeftButton, {}, QPoint(5, digital->height() / 2));
    QVERIFY(window.action("mnuTheoPeak")->isEnabled());  // analytical mode
    QTest::mouseClick(digital, Qt::LeftButton, {}, QPoint(5, digital->height() / 2));
    QVERIFY(!window.action("mnuTheoPeak")->isEnabled());
    // Typing into the boxes runs their change events: td = Estep / V.
    window.action("mnuInstrument")->trigger();
    QWidget* form = window.window("FormIns")->widget();
    for (auto [name, text] : {std::pair{"V", "0.5"}, {"Estep", "0.01"}}) {
      auto* box = form->findChild<QLineEdit*>(name);
      box->selectAll();
      QTest::keyClick(box, Qt::Key_Delete);
      QTest::keyClicks(box, text);
    }
    QCOMPARE(Val(form->findChild<QLineEdit*>("td")->text().toStdString()), 0.02);
    window.workbench().formIns().control("V").setText("0.25");  // and the model reaches the widget
    QCOMPARE(Val(form->findChild<QLineEdit*>("td")->text().toStdString()), 0.04);
  }

  // A simulation draws a wave inside the frame; the plot is saved, copied and
  // printed as the picture it is.
  void simulationIsDrawnAndSaved() {
    MainWindow window;
    QTemporaryDir dir;
    std::vector<std::string> answers = {dir.filePath("wave.svg").toStdString(), dir.filePath("wave").toStdString()};
    window.platform().files.intercept = [&](DialogMode, const std::string&) -> std::optional<std::string> {
      std::string a = answers.front();
      answers.erase(answers.begin());
      return a;
    };
    window.show();
    window.action("mnuSimulate")->trigger();
    QVERIFY(window.action("mnuDisplay")->isEnabled());
    QVERIFY(!QApplication::overrideCursor());
    auto* view = qobject_cast<PlotView*>(window.window("FormPlot")->widget());
    const QImage img = view->grab().toImage();
    QVERIFY(DarkPixels(img, QRect(img.width() / 12 + 4, img.height() / 6, img.width() * 5 / 6 - 8, img.height() / 2)) > 20);
    view->saveAs();
    view->saveAs();  // a name without a type becomes a PNG
    QFile svg(dir.filePath("wave.svg"));
    QVERIFY(svg.open(QIODevice::ReadOnly) && svg.readAll().contains("E /V"));
    QCOMPARE(QImage(dir.filePath("wave.png")).size(), view->size());
    window.action("mnuCopyto")->trigger();
    QCOMPARE(QGuiApplication::clipboard()->image().size(), view->size());
    QVERIFY(!WritePictureFile(std::vector<DrawCall>{}, dir.filePath("p.bmpx").toStdString()).empty());  // no such type
  }

  // A form brought to the front redoes its layout: the instrument form shows
  // the pulse box of the technique chosen while it stood behind.
  void aFormBroughtToTheFrontRedoesItsLayout() {
    MainWindow window;
    window.show();
    window.action("mnuInstrument")->trigger();
    window.action("mnuTech")->trigger();
    auto* tp = window.window("FormIns")->widget()->findChild<QLineEdit*>("tp");
    QVERIFY(!tp->isVisibleTo(tp->parentWidget()));
    window.workbench().formTech().control("optTech", 3).click();
    window.workbench().formTech().OK();
    QVERIFY(!tp->isVisibleTo(tp->parentWidget()));
    window.findChild<QMdiArea*>()->setActiveSubWindow(window.window("FormIns"));
    QCoreApplication::processEvents();
    QVERIFY(tp->isVisibleTo(tp->parentWidget()));
  }

  // A plot window without a picture plots again when it is resized, and so
  // says again that there is nothing to draw.
  void aResizeWithoutAPictureTriesAgain() {
    MainWindow window;
    std::vector<std::string> messages;
    window.platform().messages.intercept = [&](const std::string& m) { messages.push_back(m); };
    window.show();
    window.action("mnuSimulate")->trigger();
    FormOption& option = window.workbench().formOption();
    option.control("Xauto").setValue(0);
    option.control("XminText").setText("0.2");
    option.control("XmaxText").setText("0.2");
    option.control("cmdOK").click();
    QCoreApplication::processEvents();
    QCOMPARE(messages, std::vector<std::string>{"Error: No data!"});
    QMdiSubWindow* plot = window.window("FormPlot");
    plot->resize(plot->width() + 50, plot->height() + 50);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(messages, (std::vector<std::string>{"Error: No data!", "Error: No data!"}));
  }

  // Measured in the font it is shown in, each heading of the chemicals form
  // ends before the next control on its line begins.
  void chemicalsHeadingsFitTheirColumns() {
    MainWindow window;
    window.show();
    window.action("mnuExperimental")->trigger();
    QWidget* form = window.window("FormExpr")->widget();
    for (QLabel* a : form->findChildren<QLabel*>()) {
      if (!a->isVisibleTo(form) || a->text().isEmpty()) continue;
      const int end = a->x() + QFontMetrics(a->font()).horizontalAdvance(a->text());
      for (QWidget* b : a->parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        const int shared = std::min(a->y() + a->height(), b->y() + b->height()) - std::max(a->y(), b->y());
        if (b != a && b->isVisibleTo(form) && 2 * shared > a->height() && b->x() > a->x())
          QVERIFY2(end < b->x(), qPrintable(a->objectName() + " runs into " + b->objectName()));
      }
    }
  }

  // Labels printed at one corner (the lowest Y label beside the first X
  // label) share no ink: together they blacken what they blacken apart.
  void labelsAtOneCornerDoNotOverlap() {
    auto ink = [](const std::vector<std::pair<float, std::string>>& prints) {
      std::vector<DrawCall> calls = {{"scale", {0, 0, 393, 178}, {}}};
      for (const auto& [y, text] : prints) {
        calls.push_back({"textpos", {200, y}, {}});
        calls.push_back({"print", {}, text});
      }
      QImage img(393, 178, QImage::Format_ARGB32);
      img.fill(Qt::white);
      QPainter painter(&img);
      PaintPicture(painter, QRectF(0, 0, 393, 178), calls);
      painter.end();
      return DarkPixels(img, img.rect());
    };
    const int x = ink({{100, "0.3"}}), y = ink({{100, "-1"}});
    QVERIFY(x > 0 && y > 0);
    QCOMPARE(ink({{100, "0.3"}, {100, "-1"}}), x + y);
    QCOMPARE(ink({{20, "0.3"}, {100, "-1"}}), x + y);
  }
  // F1 opens the user guide, a file that exists (the source tree's here).
  void f1OpensTheUserGuide() {
    MainWindow window;
    const auto keys = window.findChildren<QShortcut*>();
    QVERIFY(std::any_of(keys.begin(), keys.end(), [](QShortcut* k) { return k->key() == QKeySequence(Qt::Key_F1); }));
    QVERIFY(UserGuidePath().endsWith(QStringLiteral("/VoltrixDoc.htm")) && QFile::exists(UserGuidePath()));
  }
};

QTEST_MAIN(GuiTest)
#include "gui_test.moc"
