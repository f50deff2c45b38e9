// The desktop program on the offscreen platform: menus, input forms bound
// to their models, a simulation that draws, and the picture commands.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QShortcut>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPrinterInfo>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>
#include <algorithm>
#include <string>
#include <vector>

#include "form_view.h"
#include "main_window.h"
#include "model/controls.h"
#include "model/number_format.h"
#include "plot_view.h"
#include "qt_platform.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_tech.h"
#include "user_guide.h"
#include "ui/plot_display_list.h"
#include "ui/workbench.h"

using namespace voltrix;

namespace {

// A main window whose message boxes and file dialogs are answered by the test.
struct Program {
  MainWindow window;
  std::vector<std::string> messages;
  std::vector<std::string> fileAnswers;
  Program() {
    window.platform().messages.intercept = [this](const std::string& m) { messages.push_back(m); };
    window.platform().files.intercept = [this](DialogMode, const std::string&) -> std::optional<std::string> {
      if (fileAnswers.empty()) return std::nullopt;
      std::string a = fileAnswers.front();
      fileAnswers.erase(fileAnswers.begin());
      return a;
    };
    window.show();
  }
  void menu(const char* name) {
    QAction* a = window.action(name);
    QVERIFY2(a, name);
    a->trigger();
    QCoreApplication::processEvents();
  }
  template <class W>
  W* in(const char* form, const char* control) {
    QMdiSubWindow* w = window.window(form);
    return w ? w->widget()->findChild<W*>(control) : nullptr;
  }
  // Types over the whole text of a box, as a user selecting it and typing would.
  void type(QLineEdit* box, const QString& text) {
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, text);
  }
};

int DarkPixels(const QImage& img, const QRect& r) {
  int n = 0;
  for (int y = r.top(); y <= r.bottom(); ++y)
    for (int x = r.left(); x <= r.right(); ++x) n += qGray(img.pixel(x, y)) < 128;
  return n;
}

}  // namespace

class WindowTest : public QObject {
  Q_OBJECT
 private slots:
  void mainWindowCarriesTheWholeMenuTree() {
    Program p;
    QCOMPARE(p.window.windowTitle(), QString("Voltrix for Windows"));
    QStringList titles;
    for (QAction* a : p.window.menuBar()->actions()) titles << a->text();
    QCOMPARE(titles, QStringList({"&File", "&Input", "&Run", "&Display", "&Analysis", "&Help"}));
    QVERIFY(!p.window.action("mnuDisplay")->isEnabled());
    QVERIFY(!p.window.action("mnuData")->isEnabled());
    QVERIFY(!p.window.action("mnuTheoPeak")->isEnabled());
    QVERIFY(p.window.action("mnuSimulate")->isEnabled());
    QCOMPARE(p.window.action("mnuMechamism")->text(), QString("&Mechamism..."));
    QCOMPARE(p.window.action("mnuSemiInte")->text(), QString("S&emi-intergrate"));
    QVERIFY(p.window.action("mnuBar1")->isSeparator());
    QCOMPARE(p.window.action("mnu0001Y")->text(), QString("0.001Y"));

    // The enabled state follows the model live: the analytical mode makes
    // "&Theoretical Peak" available, and a second click takes it back.
    p.menu("mnuMechamism");
    auto* digital = p.in<QCheckBox>("FormMech", "CheckDigital");
    QVERIFY(digital);
    QVERIFY(digital->isChecked());
    QTest::mouseClick(digital, Qt::LeftButton, {}, QPoint(5, digital->height() / 2));
    QVERIFY(!digital->isChecked());
    QVERIFY(p.window.action("mnuTheoPeak")->isEnabled());
    QTest::mouseClick(digital, Qt::LeftButton, {}, QPoint(5, digital->height() / 2));
    QVERIFY(!p.window.action("mnuTheoPeak")->isEnabled());
  }

  void inputFormsOpenAtTheirPlacesAndDerivedTextsFollow() {
    Program p;
    const std::pair<const char*, const char*> forms[] = {{"mnuTech", "FormTech"},
                                                         {"mnuMechamism", "FormMech"},
                                                         {"mnuInstrument", "FormIns"},
                                                         {"mnuExperimental", "FormExpr"}};
    for (const auto& [menu, form] : forms) {
      p.menu(menu);
      QMdiSubWindow* w = p.window.window(form);
      QVERIFY2(w && w->isVisible(), form);
      QCOMPARE(w->windowTitle().toStdString(), p.window.workbench().formNamed(form)->caption());
    }

    // The drop time is the potential step over the scan rate.
    auto* estep = p.in<QLineEdit>("FormIns", "Estep");
    auto* rate = p.in<QLineEdit>("FormIns", "V");
    auto* drop = p.in<QLineEdit>("FormIns", "td");
    QVERIFY(estep && rate && drop);
    const double dpi = estep->logicalDpiX();
    const Place& place = p.window.workbench().formIns().control("Estep").place();
    QCOMPARE(estep->x(), TwipsToPixels(place.left, dpi));
    QCOMPARE(estep->width(), TwipsToPixels(place.width, dpi));
    p.type(rate, "0.5");
    p.type(estep, "0.01");
    QCOMPARE(Val(drop->text().toStdString()), 0.02);
    QCOMPARE(p.window.workbench().formIns().control("V").text(), std::string("0.5"));

    // The chemical equilibrium constant is kf over kb.
    auto* kf = p.in<QLineEdit>("FormExpr", "kf(1)");
    auto* kb = p.in<QLineEdit>("FormExpr", "kb(1)");
    auto* keq = p.in<QLabel>("FormExpr", "LabelKeq(1)");
    QVERIFY(kf && kb && keq);
    p.type(kf, "6");
    p.type(kb, "4");
    QCOMPARE(Val(keq->text().toStdString()), 1.5);

    // A change made by the model reaches the widget at once.
    p.window.workbench().formIns().control("V").setText("0.25");
    QCOMPARE(rate->text(), QString("0.25"));
    QCOMPARE(Val(drop->text().toStdString()), 0.04);

    // Closing a form's window only hides it; its contents stay.
    p.window.window("FormIns")->close();
    QCoreApplication::processEvents();
    QVERIFY(!p.window.window("FormIns")->isVisible());
    QVERIFY(!p.window.workbench().formIns().shown());
    p.menu("mnuInstrument");
    QVERIFY(p.window.window("FormIns")->isVisible());
    QCOMPARE(p.in<QLineEdit>("FormIns", "V")->text(), QString("0.25"));

    // Asking again for a window that stands behind others brings it forward.
    auto* area = p.window.findChild<QMdiArea*>("MdiArea");
    QVERIFY(area);
    QCOMPARE(area->activeSubWindow(), p.window.window("FormIns"));
    p.menu("mnuTech");
    QCOMPARE(area->activeSubWindow(), p.window.window("FormTech"));
  }

  void simulateDrawsACurveAndEnablesDisplayAndAnalysis() {
    Program p;
    p.menu("mnuSimulate");
    QMdiSubWindow* plot = p.window.window("FormPlot");
    QVERIFY(plot && plot->isVisible());
    QVERIFY(p.window.action("mnuDisplay")->isEnabled());
    QVERIFY(p.window.action("mnuData")->isEnabled());
    QVERIFY(!QApplication::overrideCursor());  // the hourglass is gone afterwards
    const DisplayList& picture = p.window.platform().plot;
    QVERIFY(picture.hasPicture());
    // The curve, point by point (Curve 1 draws boxes; the first box is the
    // frame): a real wave that rises through most of the frame's height.
    std::vector<const DrawCall*> boxes;
    for (const DrawCall& c : picture.calls())
      if (c.op == "box") boxes.push_back(&c);
    QVERIFY(boxes.size() > 10);
    const float frameBottom = boxes[0]->args[1], frameTop = boxes[0]->args[3];
    float low = frameTop, high = frameBottom;
    for (std::size_t i = 1; i < boxes.size(); ++i) {
      const float y = (boxes[i]->args[1] + boxes[i]->args[3]) / 2;
      low = std::min(low, y);
      high = std::max(high, y);
    }
    QVERIFY(high - low > 0.5f * (frameTop - frameBottom));

    // The curve shows inside the frame: ink well inside it, away from the edges.
    auto* view = plot->widget();
    QImage img = view->grab().toImage();
    const int w = img.width(), h = img.height();
    const QRect inside(w / 12 + 4, h / 6, w - w / 6 - 8, h / 2);
    QVERIFY(DarkPixels(img, inside) > 20);

    // A resize draws the plot again at the new size.
    const QImage before = img;
    plot->resize(plot->width() + 120, plot->height() + 60);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QVERIFY(view->grab().toImage().size() != before.size());
    QVERIFY(picture.hasPicture());
    QVERIFY(p.messages.empty() || p.messages.front().find("No data") == std::string::npos);

    // Its context menu saves the picture; a name without a type becomes a PNG.
    QTemporaryDir dir;
    auto* plotView = qobject_cast<PlotView*>(view);
    QVERIFY(plotView);
    p.fileAnswers = {dir.filePath("wave.svg").toStdString(), dir.filePath("wave").toStdString()};
    plotView->saveAs();
    plotView->saveAs();
    QFile svg(dir.filePath("wave.svg"));
    QVERIFY(svg.open(QIODevice::ReadOnly));
    QVERIFY(svg.readAll().contains("E /V"));
    const QImage png(dir.filePath("wave.png"));
    QCOMPARE(png.size(), view->size());
  }

  void optionFormAppliesOnOKAndPictureCommandsWork() {
    Program p;
    p.menu("mnuSimulate");
    const DisplayList& picture = p.window.platform().plot;
    auto lines = [&] {
      int n = 0;
      for (const DrawCall& c : picture.calls()) n += c.op == "line";
      return n;
    };
    const int before = lines();
    p.menu("mnuOption");
    auto* grid = p.in<QCheckBox>("formOption", "CheckGrid");
    auto* ok = p.in<QPushButton>("formOption", "cmdOK");
    QVERIFY(grid && ok);
    QTest::mouseClick(grid, Qt::LeftButton, {}, QPoint(5, grid->height() / 2));
    QCOMPARE(lines(), before);  // nothing changes before OK
    QTest::mouseClick(ok, Qt::LeftButton);
    QCoreApplication::processEvents();
    QVERIFY(lines() > before);
    QVERIFY(!p.window.window("formOption")->isVisible());

    // Printing where no printer exists writes a PDF file the user names.
    QTemporaryDir dir;
    const QString pdf = dir.filePath("plot.pdf");
    p.fileAnswers.push_back(pdf.toStdString());
    p.menu("mnuPrint");
    if (QPrinterInfo::defaultPrinter().isNull()) {
      QFile f(pdf);
      QVERIFY(f.open(QIODevice::ReadOnly));
      QVERIFY(f.read(5).startsWith("%PDF"));
    }

    // The plot goes on the clipboard as a bitmap of the window's size.
    p.menu("mnuCopyto");
    const QImage clip = QGuiApplication::clipboard()->image();
    QVERIFY(!clip.isNull());
    QCOMPARE(clip.size(), p.window.window("FormPlot")->widget()->size());
    QVERIFY(DarkPixels(clip, clip.rect()) > 50);
  }


  void resultWindowShowsPrintedLinesAndClears() {
    Program p;
    p.menu("mnuSimulate");
    p.menu("mnuTime");
    p.menu("mnuNextCurve");
    QMdiSubWindow* result = p.window.window("FormResult");
    QVERIFY(result && result->isVisible());
    auto* text = qobject_cast<QPlainTextEdit*>(result->widget());
    QVERIFY(text);
    const QStringList lines = text->toPlainText().split('\n');
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines[0].startsWith("time = ") && lines[0].endsWith(" s"));
    QCOMPARE(lines[1], QString("Curve Number is  1 "));
    QVERIFY(text->isReadOnly());
    text->selectAll();
    QCOMPARE(text->textCursor().selectedText().size(), text->toPlainText().size());

    p.menu("mnuClear");
    QVERIFY(text->toPlainText().isEmpty());
    QVERIFY(p.window.platform().plot.hasPicture());  // the plot stays
  }

  void noDataLeavesTheWindowBlankAndAResizeDrawsAgain() {
    Program p;
    p.menu("mnuSimulate");
    p.menu("mnuOption");
    auto* xauto = p.in<QCheckBox>("formOption", "Xauto");
    QVERIFY(xauto);
    QTest::mouseClick(xauto, Qt::LeftButton, {}, QPoint(5, xauto->height() / 2));
    auto* xmin = p.in<QLineEdit>("formOption", "XminText");
    auto* xmax = p.in<QLineEdit>("formOption", "XmaxText");
    QVERIFY(xmin && xmax && xmin->isVisible());
    p.type(xmin, "0.2");
    p.type(xmax, "0.2");
    QTest::mouseClick(p.in<QPushButton>("formOption", "cmdOK"), Qt::LeftButton);
    QCoreApplication::processEvents();
    QCOMPARE(p.messages, std::vector<std::string>{"Error: No data!"});
    QVERIFY(!p.window.platform().plot.hasPicture());

    QMdiSubWindow* plot = p.window.window("FormPlot");
    plot->resize(plot->width() + 50, plot->height() + 50);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    // The resize plots again, though there is no picture: the same message.
    QCOMPARE(p.messages, (std::vector<std::string>{"Error: No data!", "Error: No data!"}));
  }

  // A form brought to the front redoes its layout: the instrument form
  // shows the pulse boxes of the technique chosen while it stood behind.
  void aFormBroughtToTheFrontRedoesItsLayout() {
    Program p;
    p.menu("mnuInstrument");
    p.menu("mnuTech");
    auto* tp = p.in<QLineEdit>("FormIns", "tp");
    QVERIFY(tp && !tp->isVisibleTo(tp->parentWidget()));
    p.window.workbench().formTech().control("optTech", 3).click();
    p.window.workbench().formTech().OK();
    QVERIFY(!tp->isVisibleTo(tp->parentWidget()));
    QMdiSubWindow* ins = p.window.window("FormIns");
    p.window.findChild<QMdiArea*>()->setActiveSubWindow(ins);
    QCoreApplication::processEvents();
    QVERIFY(tp->isVisibleTo(tp->parentWidget()));
  }

  // Headings whose places overlap keep to their own column: measured in the
  // font they are shown in, each caption ends before the next control on
  // its line begins.
  void chemicalsHeadingsFitTheirColumns() {
    Program p;
    p.menu("mnuExperimental");
    QWidget* form = p.window.window("FormExpr")->widget();
    int checked = 0;
    for (QLabel* a : form->findChildren<QLabel*>()) {
      if (!a->isVisibleTo(form) || a->text().isEmpty()) continue;
      const int end = a->x() + QFontMetrics(a->font()).horizontalAdvance(a->text());
      for (QWidget* b : a->parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        const int shared = std::min(a->y() + a->height(), b->y() + b->height()) - std::max(a->y(), b->y());
        const bool sameLine = 2 * shared > a->height();  // a row below that only touches it is no neighbour
        if (b != a && b->isVisibleTo(form) && sameLine && b->x() > a->x())
          QVERIFY2(end < b->x(), qPrintable(a->objectName() + " runs into " + b->objectName()));
      }
      ++checked;
    }
    QVERIFY(checked > 20);
  }

  // F1 opens the user guide of the source tree (or the installed one).
  void f1OpensTheUserGuide() {
    Program p;
    const auto keys = p.window.findChildren<QShortcut*>();
    QVERIFY(std::any_of(keys.begin(), keys.end(), [](QShortcut* k) { return k->key() == QKeySequence(Qt::Key_F1); }));
    QVERIFY(UserGuidePath().endsWith(QStringLiteral("/VoltrixDoc.htm")));
  }

  void fileFiltersBecomeQtNameFilters() {
    QCOMPARE(QtNameFilter("Curve (*.csv)|*.csv|All Files|*.*"), QString("Curve (*.csv);;All Files (*.*)"));
    QCOMPARE(QtNameFilter("Parameter|*.par;*.txt"), QString("Parameter (*.par *.txt)"));
    QCOMPARE(QtNameFilter(""), QString());
  }
};

QTEST_MAIN(WindowTest)
#include "gui_window_test.moc"
