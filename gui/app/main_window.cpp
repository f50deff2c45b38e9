#include "main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <algorithm>
#include <set>

#include "app/commands.h"
#include "form_view.h"
#include "model/errors.h"
#include "plot_view.h"
#include "text_view.h"
#include "user_guide.h"
#include "ui/form_plot.h"
#include "ui/main_form.h"
#include "ui/plot_engine.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// A child window that the user closes is only hidden, as a form is: it keeps
// its contents until the process ends.
class ChildWindow : public QMdiSubWindow {
 public:
  ChildWindow(Form& form, QWidget* parent) : QMdiSubWindow(parent), form_(form) {
    setAttribute(Qt::WA_DeleteOnClose, false);
  }

 protected:
  void closeEvent(QCloseEvent* event) override {
    event->ignore();
    form_.hide();
  }

 private:
  Form& form_;
};

// A small voltammogram: the program's own icon for its windows.
QIcon AppIcon() {
  QPixmap pixmap(32, 32);
  pixmap.fill(Qt::transparent);
  QPainter p(&pixmap);
  p.setRenderHint(QPainter::Antialiasing);
  p.setPen(QPen(QColor(30, 60, 150), 2.5));
  QPainterPath path(QPointF(2, 27));
  path.cubicTo(QPointF(12, 27), QPointF(13, 4), QPointF(18, 5));
  path.cubicTo(QPointF(22, 6), QPointF(24, 17), QPointF(30, 18));
  p.drawPath(path);
  return QIcon(pixmap);
}

}  // namespace

MainWindow::MainWindow() {
  platform_.messages.parent = this;
  platform_.files.parent = this;
  platform_.fitProgress.showStatus = [this](const QString& text) { statusBar()->showMessage(text); };
  platform_.cycles.parent = this;
  wb_ = std::make_unique<Workbench>(platform_.platform());
  setWindowTitle(QString::fromStdString(wb_->mainForm().caption()));
  setWindowIcon(AppIcon());
  area_ = new QMdiArea(this);
  area_->setObjectName(QStringLiteral("MdiArea"));
  setCentralWidget(area_);
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  // Large enough for the widest form (the chemicals form at its place),
  // within the screen.
  const double dpi = logicalDpiX() > 0 ? logicalDpiX() : 96;
  QSize size(std::max(TwipsToPixels(wb_->mainForm().area().width, dpi), TwipsToPixels(13200, dpi)),
             std::max(TwipsToPixels(wb_->mainForm().area().height, dpi), TwipsToPixels(9600, dpi)));
  if (QScreen* screen = QGuiApplication::primaryScreen()) size = size.boundedTo(screen->availableSize());
  resize(size);
  BindMenuCommands(*wb_);
  buildMenus();
  connect(area_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* w) { windowActivated(w); });
  auto* guide = new QShortcut(QKeySequence::HelpContents, this);
  connect(guide, &QShortcut::activated, this, [this] { OpenUserGuide(platform_.messages); });
  platform_.picture.screenSize = [this]() -> QSize {
    auto it = windows_.find("FormPlot");
    if (it == windows_.end() || !it->second->widget()) return {};
    return it->second->widget()->size();
  };
  syncForms();
}

MainWindow::~MainWindow() {
  // The windows observe the forms: they go before the workbench does.
  wb_->mainForm().removeObserver(menuObserver_);
  for (Form* f : wb_->createdForms()) {
    auto it = observers_.find(f->name());
    if (it != observers_.end()) f->removeObserver(it->second);
  }
  delete area_;
  area_ = nullptr;
  windows_.clear();
  platform_.plot.onChange = nullptr;
}

QAction* MainWindow::action(const std::string& menuName) const {
  Control* c = wb_->mainForm().find(menuName);
  if (!c) return nullptr;
  if (auto it = actions_.find(c); it != actions_.end()) return it->second;
  if (auto it = menus_.find(c); it != menus_.end()) return it->second->menuAction();
  return nullptr;
}

QMdiSubWindow* MainWindow::window(const std::string& formName) const {
  auto it = windows_.find(formName);
  return it == windows_.end() ? nullptr : it->second;
}

void MainWindow::buildMenus() {
  MainForm& main = wb_->mainForm();
  std::set<const Control*> parents;
  for (Control* c : main.menuItems())
    if (c->container()) parents.insert(c->container());
  for (Control* c : main.menuItems()) {
    const QString caption = QString::fromStdString(c->caption());
    if (parents.count(c)) {
      QMenu* menu = c->container() ? menus_.at(c->container())->addMenu(caption) : menuBar()->addMenu(caption);
      menu->setObjectName(QString::fromStdString(c->name()));
      menus_[c] = menu;
    } else if (c->caption() == "-") {
      QAction* sep = c->container() ? menus_.at(c->container())->addSeparator() : nullptr;
      if (sep) actions_[c] = sep;
    } else {
      QAction* a = c->container() ? menus_.at(c->container())->addAction(caption) : menuBar()->addAction(caption);
      a->setObjectName(QString::fromStdString(c->name()));
      const std::string name = c->name();
      connect(a, &QAction::triggered, this, [this, name] { runCommand(name); });
      actions_[c] = a;
    }
    updateMenu(c);
  }
  menuObserver_ = main.addObserver([this](const Control* c) {
    if (c) updateMenu(c);
  });
}

void MainWindow::updateMenu(const Control* c) {
  QAction* a = nullptr;
  if (auto it = menus_.find(c); it != menus_.end()) a = it->second->menuAction();
  else if (auto it2 = actions_.find(c); it2 != actions_.end()) a = it2->second;
  if (!a) return;
  if (!a->isSeparator()) a->setText(QString::fromStdString(c->caption()));
  a->setEnabled(c->enabled());
  a->setVisible(c->visible());
}

void MainWindow::runCommand(const std::string& menuName) {
  // Every command shows the busy pointer while it runs (dialogs lift it).
  QApplication::setOverrideCursor(Qt::WaitCursor);
  RunMenuCommand(*wb_, menuName);
  QApplication::restoreOverrideCursor();
  // A command that ended on an error it did not handle must not leave the
  // hourglass behind.
  platform_.pointer.set(Pointer::kDefault);
  if (wb_->exitRequested) {
    // "E&xit": at once, nothing asked, nothing saved.
    QApplication::exit(0);
    close();
    return;
  }
  syncForms();
  // A command that shows a window already open brings it to the front.
  static const std::map<std::string, std::string> shows = {
      {"mnuTech", "FormTech"},      {"mnuMechamism", "FormMech"},     {"mnuInstrument", "FormIns"},
      {"mnuExperimental", "FormExpr"}, {"mnuOption", "formOption"},   {"mnuSimulate", "FormPlot"},
      {"mnuPlot", "FormPlot"},      {"mnuNextCurve", "FormResult"}, {"mnuTime", "FormResult"},
      {"mnuAbout", "FormAbout"}};
  if (auto it = shows.find(menuName); it != shows.end()) {
    QMdiSubWindow* w = window(it->second);
    if (w && w->isVisible()) {
      w->raise();
      area_->setActiveSubWindow(w);
    }
  }
}

void MainWindow::runEdit(const std::function<void()>& edit) {
  try {
    edit();
  } catch (const RunError& err) {
    platform_.messages.show("Error: " + err.description());
  }
  syncForms();
}

// A form that the user brings to the front becomes active and redoes its
// layout. Coming back from a message box, or the program's own raising of a
// window, is no new activation.
void MainWindow::windowActivated(QMdiSubWindow* w) {
  if (!w || w == lastActive_ || syncing_) {
    if (w) lastActive_ = w;
    return;
  }
  lastActive_ = w;
  for (Form* f : wb_->createdForms())
    if (window(f->name()) == w && f->shown()) runEdit([f] { f->activate(); });
}

QMdiSubWindow* MainWindow::addWindow(Form& form) {
  QWidget* content = nullptr;
  if (form.name() == "FormPlot") {
    auto replot = [this] {
      if (syncing_) return;
      PlotCurves(*wb_);
      syncForms();
    };
    content = new PlotView(platform_.plot, platform_.files, platform_.messages, replot);
  } else if (auto* text = dynamic_cast<TextWindow*>(&form)) {
    content = new TextView(*text);
  } else {
    content = new FormView(form, [this](const std::function<void()>& edit) { runEdit(edit); });
  }
  auto* window = new ChildWindow(form, area_);
  window->setObjectName(QString::fromStdString(form.name()));
  window->setWidget(content);
  window->setWindowTitle(QString::fromStdString(form.caption()));
  window->setWindowIcon(windowIcon());
  area_->addSubWindow(window);
  const bool fixed = dynamic_cast<FormView*>(content) != nullptr;
  if (fixed) window->setWindowFlags(Qt::SubWindow | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
  window->resize(window->sizeHint().expandedTo(content->sizeHint()));
  const double dpi = logicalDpiX() > 0 ? logicalDpiX() : 96;
  window->move(TwipsToPixels(form.area().left, dpi), TwipsToPixels(form.area().top, dpi));
  window->hide();
  if (form.name() == "FormPlot") {
    QWidget* view = content;
    platform_.plot.onChange = [view] { view->update(); };
  }
  // Shown or hidden: the window follows once the model's event is over
  // (a window made inside the form's own notification would change the
  // list of observers being called).
  observers_[form.name()] = form.addObserver([this](const Control* c) {
    if (!c) QMetaObject::invokeMethod(this, [this] { syncForms(); }, Qt::QueuedConnection);
  });
  return window;
}

void MainWindow::syncForms() {
  if (syncing_ || !area_) return;
  syncing_ = true;
  for (Form* f : wb_->createdForms()) {
    if (f == &wb_->mainForm()) continue;
    QMdiSubWindow* w = window(f->name());
    if (!w) w = windows_[f->name()] = addWindow(*f);
    if (f->shown() && !w->isVisible()) {
      w->show();
      w->raise();
      area_->setActiveSubWindow(w);
    } else if (!f->shown() && w->isVisible()) {
      w->hide();
    }
  }
  syncing_ = false;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  // Closing the main window ends the process at once, like "E&xit".
  event->accept();
  QApplication::exit(0);
}

}  // namespace voltrix
