#include "session_memory.h"

#include <QCoreApplication>
#include <QSettings>
#include <QStringList>

namespace voltrix {

namespace {

QSettings Store() { return QSettings(QSettings::UserScope, QStringLiteral("Voltrix"), QCoreApplication::applicationName()); }

QString WindowKey(const std::string& form) { return QStringLiteral("windows/") + QString::fromStdString(form); }

}  // namespace

SessionMemory::SessionMemory() {
  std::vector<std::string> texts;
  for (const QString& t : Store().value(QStringLiteral("files/recent")).toStringList()) texts.push_back(t.toStdString());
  recent_ = RecentFiles::fromTexts(texts);
}

QByteArray SessionMemory::mainWindow() const { return Store().value(QStringLiteral("windows/main")).toByteArray(); }

void SessionMemory::keepMainWindow(const QByteArray& geometry) { Store().setValue(QStringLiteral("windows/main"), geometry); }

std::optional<QRect> SessionMemory::window(const std::string& form) const {
  const QRect place = Store().value(WindowKey(form)).toRect();
  if (!place.isValid()) return std::nullopt;
  return place;
}

void SessionMemory::keepWindow(const std::string& form, const QRect& place) { Store().setValue(WindowKey(form), place); }

QString SessionMemory::lastFolder() const { return Store().value(QStringLiteral("files/folder")).toString(); }

void SessionMemory::keepFolder(const QString& folder) { Store().setValue(QStringLiteral("files/folder"), folder); }

void SessionMemory::keepRecent() {
  QStringList texts;
  for (const std::string& t : recent_.toTexts()) texts << QString::fromStdString(t);
  Store().setValue(QStringLiteral("files/recent"), texts);
}

}  // namespace voltrix
