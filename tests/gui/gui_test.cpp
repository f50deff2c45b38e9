// What only the desktop program's widgets can show, on the offscreen
// platform: the menu tree following the model, typing into bound boxes, a
// simulation drawn where the scale puts it, and the picture files.
#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QtTest>

#include "main_window.h"
#include "model/number_format.h"
#include "plot_view.h"
#include "render/picture_file.h"
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
    QVERIFY(!WritePictureFile({}, dir.filePath("p.bmpx").toStdString()).empty());  // no such picture type
  }

};

QTEST_MAIN(GuiTest)
#include "gui_test.moc"
