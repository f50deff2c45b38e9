#pragma once
// MDIForm1: the main window with the menu bar of the main form model and an
// area in which the child windows stand, each rendered from its form.
#include <QMainWindow>
#include <map>
#include <memory>
#include <string>

#include "qt_platform.h"
#include "session_memory.h"

class QAction;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;

namespace voltrix {

class Control;
class Form;
class Workbench;

class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  MainWindow();
  ~MainWindow() override;

  Workbench& workbench() { return *wb_; }
  QtPlatform& platform() { return platform_; }
  // The action or menu of a menu control, by name ("mnuSimulate").
  QAction* action(const std::string& menuName) const;
  // The child window of a form, once the form has been created.
  QMdiSubWindow* window(const std::string& formName) const;

  // Runs a menu command as a click on it; then quits if it was "E&xit".
  void runCommand(const std::string& menuName);
  // Runs a user edit on a form: a stray run-time error becomes a message.
  void runEdit(const std::function<void()>& edit);
  // Gives every form created so far its window and shows what the model shows.
  void syncForms();

  // Runs a menu command whose file dialog `file` answers.
  void runFileCommand(const std::string& menuName, const std::string& file);
  // Opens files as their menu commands do: a parameter file into the forms,
  // any other as an import. Several curves are overlaid; with simulateEach
  // each parameter file (or, without one, the forms) is simulated.
  void openFiles(const QStringList& files, bool simulateEach = false);
  // The plot window's view, once the plot window exists.
  class PlotView* plotView() const;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void buildMenus();
  void updateMenu(const Control* c);
  QMdiSubWindow* addWindow(Form& form);
  void windowActivated(QMdiSubWindow* w);
  void placeWindow(QMdiSubWindow* window, const Form& form);
  void buildRecentMenu();
  void rememberFile(const std::string& menuName, int messagesBefore);
  void keepPlaces();

  QtPlatform platform_;
  SessionMemory memory_;
  std::unique_ptr<Workbench> wb_;
  QMdiArea* area_ = nullptr;
  std::map<const Control*, QAction*> actions_;
  std::map<const Control*, QMenu*> menus_;
  std::map<std::string, QMdiSubWindow*> windows_;
  std::map<std::string, int> observers_;
  int menuObserver_ = 0;
  bool syncing_ = false;
  QMdiSubWindow* lastActive_ = nullptr;
  QMenu* recentMenu_ = nullptr;
  QLabel* reading_ = nullptr;  // the pointer's E and I over the plot
};

}  // namespace voltrix
