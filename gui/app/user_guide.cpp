#include "user_guide.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include "model/platform.h"

namespace voltrix {

QString UserGuidePath() {
  const QString besideProgram =
      QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral(VOLTRIX_GUIDE_FROM_BINDIR));
  for (const QString& candidate : {besideProgram, QStringLiteral(VOLTRIX_GUIDE_IN_SOURCE)})
    if (QFileInfo(candidate).isFile()) return QFileInfo(candidate).canonicalFilePath();
  return {};
}

void OpenUserGuide(MessageBox& messages) {
  const QString path = UserGuidePath();
  if (path.isEmpty()) {
    messages.show("The user guide VoltrixDoc.htm is not installed with this program.");
    return;
  }
  if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
    messages.show("No browser could open the user guide " + path.toStdString() + ".");
}

}  // namespace voltrix
