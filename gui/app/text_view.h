#pragma once
// The result and about windows: a read-only text that scrolls and whose
// lines can be selected and copied. Fed by the text window's line observer.
#include <QPlainTextEdit>

namespace voltrix {

class TextWindow;

class TextView : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit TextView(TextWindow& window, QWidget* parent = nullptr);
  QSize sizeHint() const override;

 private:
  TextWindow& window_;
};

}  // namespace voltrix
