#pragma once
// What the desktop program keeps between runs, in the user's settings
// (QSettings): the place and size of the main window and of each child
// window, the folder of the last file named, and the recent files. Only
// these: every run still starts with the forms' defaults. Each program
// keeps its own, under its application name, so a test run never touches
// the user's.
#include <QByteArray>
#include <QRect>
#include <QString>
#include <optional>
#include <string>

#include "app/recent_files.h"

namespace voltrix {

class SessionMemory {
 public:
  SessionMemory();

  QByteArray mainWindow() const;
  void keepMainWindow(const QByteArray& geometry);
  std::optional<QRect> window(const std::string& form) const;
  void keepWindow(const std::string& form, const QRect& place);

  QString lastFolder() const;
  void keepFolder(const QString& folder);

  RecentFiles& recent() { return recent_; }
  void keepRecent();

 private:
  RecentFiles recent_;
};

}  // namespace voltrix
