#include "text_view.h"

#include <QFontDatabase>
#include <QPointer>
#include <QScrollBar>

#include "form_view.h"
#include "ui/text_window.h"

namespace voltrix {

TextView::TextView(TextWindow& window, QWidget* parent) : QPlainTextEdit(parent), window_(window) {
  setObjectName(QString::fromStdString(window.name()));
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  // The result window lines numbers up in print zones of 14 characters: a
  // fixed pitch keeps those columns straight. Other windows keep the form's font.
  QFont font(QString::fromStdString(window.font().name));
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(window.font().size);
  if (window.name() == "FormResult") {
    font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(window.font().size + 0.75);
  }
  font.setBold(window.font().bold);
  setFont(font);
  for (const std::string& line : window.lines()) appendPlainText(QString::fromStdString(line));
  // The window has no way to drop an observer: the guard keeps a line
  // printed after this view is gone from reaching it.
  QPointer<TextView> self(this);
  window.addLineObserver([self](const std::string* line) {
    if (!self) return;
    if (line) {
      self->appendPlainText(QString::fromStdString(*line));
      self->horizontalScrollBar()->setValue(0);  // a long line does not hide the start of the others
      // Paint now: a fit prints its passes while it holds the only thread,
      // and the user should see them come. No event is processed, so no
      // other command can start meanwhile.
      if (self->isVisible()) self->viewport()->repaint();
    } else {
      self->clear();
    }
  });
}

QSize TextView::sizeHint() const {
  const double dpi = logicalDpiX() > 0 ? logicalDpiX() : 96;
  return {TwipsToPixels(window_.area().width, dpi), TwipsToPixels(window_.area().height, dpi)};
}

}  // namespace voltrix
