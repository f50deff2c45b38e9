#include "headless_qt.h"

#include <unistd.h>

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace voltrix {

namespace {

class RuntimeFolder {
 public:
  RuntimeFolder() {
    const std::string pattern = (std::filesystem::temp_directory_path() / "voltrix-runtime-XXXXXX").string();
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    if (!::mkdtemp(name.data())) return;  // mode 0700, as Qt requires
    path_ = name.data();
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(path_));
  }
  ~RuntimeFolder() {
    std::error_code ec;
    if (!path_.empty()) std::filesystem::remove_all(path_, ec);
  }

 private:
  std::string path_;
};

QtMessageHandler previousHandler = nullptr;

// The offscreen platform says so when a window asks for what only a real
// screen gives (size hints); that is no fault of the program.
void DropPlatformNotices(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (type == QtWarningMsg && message.contains(QStringLiteral("This plugin does not support"))) return;
  if (previousHandler) previousHandler(type, context, message);
}

}  // namespace

void PrepareHeadlessQt() {
  if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) static RuntimeFolder runtime;
  static bool filtered = false;
  if (!filtered && qgetenv("QT_QPA_PLATFORM") == "offscreen") {
    previousHandler = qInstallMessageHandler(DropPlatformNotices);
    filtered = true;
  }
}

}  // namespace voltrix
