#include "main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QMimeData>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <set>

#include "app/commands.h"
#include "app/present_plot.h"
#include "app/recent_files.h"
#include "form_view.h"
#include "model/errors.h"
#include "plot_view.h"
#include "text_view.h"
#include "user_guide.h"
#include "ui/form_option.h"
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

QStringList LocalFiles(const QMimeData* data) {
  QStringList files;
  if (data)
    for (const QUrl& url : data->urls())
      if (url.isLocalFile()) files << url.toLocalFile();
  return files;
}

// The files a command reads or writes, and what the recent files call them.
const std::map<std::string, FileKind>& FileCommands() {
  static const std::map<std::string, FileKind> commands = {{"mnuOpen", FileKind::Parameters},
                                                           {"mnuSave", FileKind::Parameters},
                                                           {"mnuImport", FileKind::Curve},
                                                           {"mnuExport", FileKind::Curve}};
  return commands;
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
  if (!memory_.mainWindow().isEmpty()) restoreGeometry(memory_.mainWindow());
  setAcceptDrops(true);
  reading_ = new QLabel(this);
  reading_->setObjectName(QStringLiteral("PointerReading"));
  statusBar()->addPermanentWidget(reading_);
  platform_.files.folder = memory_.lastFolder();
  platform_.files.onAnswer = [this](const QString& file) { memory_.keepFolder(QFileInfo(file).absolutePath()); };
  platform_.picture.present = [this] { return PresentPlot(*wb_, platform_.plot.calls(), platform_.plot.rowMarks()); };
  BindMenuCommands(*wb_);
  buildMenus();
  connect(area_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* w) { windowActivated(w); });
  auto* guide = new QShortcut(QKeySequence::HelpContents, this);
  connect(guide, &QShortcut::activated, this, [this] { OpenUserGuide(platform_.messages); });
  buildRecentMenu();
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
  platform_.picture.present = nullptr;
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
  const int messagesBefore = platform_.messages.shownCount;
  platform_.files.forgetLastAnswer();
  // Every command shows the busy pointer while it runs (dialogs lift it).
  QApplication::setOverrideCursor(Qt::WaitCursor);
  RunMenuCommand(*wb_, menuName);
  QApplication::restoreOverrideCursor();
  // A command that ended on an error it did not handle must not leave the
  // hourglass behind.
  platform_.pointer.set(Pointer::kDefault);
  if (wb_->exitRequested) {
    // "E&xit": at once, nothing asked, nothing saved but where the windows stood.
    keepPlaces();
    QApplication::exit(0);
    close();
    return;
  }
  syncForms();
  rememberFile(menuName, messagesBefore);
  if (PlotView* view = plotView()) view->refresh();  // labels and residual follow the command
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
    auto present = [this] { return PresentPlot(*wb_, platform_.plot.calls(), platform_.plot.rowMarks()); };
    auto* view = new PlotView(platform_.plot, wb_->formPlot().view(), present, platform_.files, platform_.messages, replot);
    connect(view, &PlotView::pointerMoved, reading_, &QLabel::setText);
    content = view;
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
  placeWindow(window, form);
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
  keepPlaces();
  event->accept();
  QApplication::exit(0);
}

// A window goes where the user last left it. The plot window opens at a
// size that shows a curve: most of the area, never less than its own.
void MainWindow::placeWindow(QMdiSubWindow* window, const Form& form) {
  if (const auto place = memory_.window(form.name())) {
    window->setGeometry(*place);
    return;
  }
  if (form.name() != "FormPlot") return;
  const QSize room = area_->viewport()->size();
  const QSize useful(std::max(window->width(), room.width() * 62 / 100), std::max(window->height(), room.height() * 60 / 100));
  window->resize(useful);
  window->move(std::clamp(room.width() - useful.width(), 0, window->x()), std::clamp(room.height() - useful.height(), 0, window->y()));
}

void MainWindow::keepPlaces() {
  memory_.keepMainWindow(saveGeometry());
  for (const auto& [name, window] : windows_) memory_.keepWindow(name, window->geometry());
}

void MainWindow::buildRecentMenu() {
  if (!recentMenu_) {
    QMenu* file = menus_.at(wb_->mainForm().find("mnuFile"));
    recentMenu_ = new QMenu(tr("Recent &Files"), file);
    recentMenu_->setObjectName(QStringLiteral("RecentFiles"));
    file->insertMenu(action("mnuBar3"), recentMenu_);
  }
  recentMenu_->clear();
  const auto& files = memory_.recent().files();
  for (std::size_t i = 0; i < files.size(); ++i) {
    const RecentFile entry = files[i];
    QAction* a = recentMenu_->addAction(QString::fromStdString(RecentCaption(i, entry.path)));
    a->setStatusTip(QString::fromStdString(entry.path));
    connect(a, &QAction::triggered, this, [this, entry] {
      if (!QFileInfo::exists(QString::fromStdString(entry.path))) {
        platform_.messages.show("The file " + entry.path + " is no longer there.");
        memory_.recent().remove(entry.path);
        memory_.keepRecent();
        buildRecentMenu();
        return;
      }
      runFileCommand(OpenCommandOf(entry.kind), entry.path);
    });
  }
  recentMenu_->addSeparator();
  QAction* clear = recentMenu_->addAction(tr("&Clear Menu"), this, [this] {
    memory_.recent() = RecentFiles();
    memory_.keepRecent();
    buildRecentMenu();
  });
  clear->setEnabled(!files.empty());
}

// A file that a command read without a fault, or wrote, joins the recent files.
void MainWindow::rememberFile(const std::string& menuName, int messagesBefore) {
  const auto command = FileCommands().find(menuName);
  const auto& file = platform_.files.lastAnswer();
  if (command == FileCommands().end() || !file) return;
  const bool reads = menuName == "mnuOpen" || menuName == "mnuImport";
  if ((reads && platform_.messages.shownCount != messagesBefore) || !QFileInfo::exists(QString::fromStdString(*file)))
    return;
  memory_.recent().add(*file, command->second);
  memory_.keepRecent();
  buildRecentMenu();
}

void MainWindow::runFileCommand(const std::string& menuName, const std::string& file) {
  platform_.files.nextAnswer = file;
  runCommand(menuName);
  platform_.files.nextAnswer.reset();  // a disabled command asked nothing
}

void MainWindow::openFiles(const QStringList& files, bool simulateEach) {
  std::vector<std::pair<std::string, FileKind>> opened;
  int parameters = 0, curves = 0;
  for (const QString& f : files) {
    const FileKind kind = KindOfFile(f.toStdString());
    (kind == FileKind::Parameters ? parameters : curves) += 1;
    opened.push_back({f.toStdString(), kind});
  }
  if (curves >= 2 || (simulateEach && parameters >= 2)) wb_->formOption().control("overlap").setValue(1);
  for (const auto& [file, kind] : opened) {
    runFileCommand(OpenCommandOf(kind), file);
    if (simulateEach && kind == FileKind::Parameters) runCommand("mnuSimulate");
  }
  if (simulateEach && parameters == 0) runCommand("mnuSimulate");
}

PlotView* MainWindow::plotView() const {
  QMdiSubWindow* w = window("FormPlot");
  return w ? qobject_cast<PlotView*>(w->widget()) : nullptr;
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!LocalFiles(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

// The files open once the drop is over, so that a message box does not hold
// up the program they were dragged from.
void MainWindow::dropEvent(QDropEvent* event) {
  const QStringList files = LocalFiles(event->mimeData());
  if (files.isEmpty()) return;
  event->acceptProposedAction();
  QTimer::singleShot(0, this, [this, files] { openFiles(files); });
}

}  // namespace voltrix
