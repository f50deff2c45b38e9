#pragma once
// MDIForm1: the main window with the menu bar of the main form model and an
// area in which the child windows stand, each rendered from its form.
#include <QMainWindow>
#include <map>
#include <memory>
#include <string>

#include "qt_platform.h"

class QAction;
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

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildMenus();
  void updateMenu(const Control* c);
  QMdiSubWindow* addWindow(Form& form);
  void windowActivated(QMdiSubWindow* w);

  QtPlatform platform_;
  std::unique_ptr<Workbench> wb_;
  QMdiArea* area_ = nullptr;
  std::map<const Control*, QAction*> actions_;
  std::map<const Control*, QMenu*> menus_;
  std::map<std::string, QMdiSubWindow*> windows_;
  std::map<std::string, int> observers_;
  int menuObserver_ = 0;
  bool syncing_ = false;
  QMdiSubWindow* lastActive_ = nullptr;
};

}  // namespace voltrix
