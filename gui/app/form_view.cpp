#include "form_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <cmath>

#include "model/controls.h"

namespace voltrix {

int TwipsToPixels(int twips, double dpi) { return static_cast<int>(std::lround(twips * dpi / 1440.0)); }

namespace {

QFont FontOf(const FontSpec& wanted) {
  QFont font(QString::fromStdString(wanted.name));
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(wanted.size);
  font.setBold(wanted.bold);
  // The forms were laid out for a narrow bitmap sans serif; the usual
  // substitutes run wider, so they are narrowed to keep captions within
  // their controls.
  if (QFontInfo(font).family() != font.family()) font.setStretch(QFont::SemiCondensed);
  return font;
}

Qt::Alignment AlignOf(Align a) {
  switch (a) {
    case Align::Center: return Qt::AlignHCenter | Qt::AlignTop;
    case Align::Right: return Qt::AlignRight | Qt::AlignTop;
    case Align::Left: break;
  }
  return Qt::AlignLeft | Qt::AlignTop;
}

// The smallest size a caption shrinks to before it is elided.
constexpr double kSmallestPoints = 6.5;

// A one-line caption is shrunk, and then elided, until it fits its room.
void FitCaption(QLabel* label, const QString& caption, const QFont& base, double room) {
  QFont font = base;
  while (QFontMetricsF(font).horizontalAdvance(caption) > room && font.pointSizeF() > kSmallestPoints)
    font.setPointSizeF(font.pointSizeF() - 0.25);
  label->setFont(font);
  label->setText(QFontMetricsF(font).elidedText(caption, Qt::ElideRight, room));
}

}  // namespace

FormView::FormView(Form& form, Runner run, QWidget* parent) : QWidget(parent), form_(form), run_(std::move(run)) {
  dpi_ = logicalDpiX() > 0 ? logicalDpiX() : 96;
  setFont(FontOf(form.font()));
  setFixedSize(TwipsToPixels(form.area().width, dpi_), TwipsToPixels(form.area().height, dpi_));
  build();
  observer_ = form_.addObserver([this](const Control* c) {
    if (c) update(c);
  });
}

FormView::~FormView() { form_.removeObserver(observer_); }

QWidget* FormView::widgetFor(const Control* control) const {
  auto it = widgets_.find(control);
  return it == widgets_.end() ? nullptr : it->second.data();
}

void FormView::build() {
  // Containers come before what they hold, so parents exist when children are made.
  for (Control* c : form_.controls()) {
    if (c->kind() == ControlKind::Menu || c->kind() == ControlKind::Form) continue;
    QWidget* parent = this;
    if (c->container()) {
      parent = widgetFor(c->container());
      if (!parent) continue;
    }
    QWidget* w = make(*c, parent);
    if (!w) continue;
    w->setObjectName(QString::fromStdString(c->fullName()));
    widgets_[c] = w;
    update(c);
  }
}

// Twips fix where each control stands, and a heading may reach into the
// place of the next control on its line: its text has only the room up to
// there.
int FormView::roomOf(const Control& label) const {
  const Place& p = label.place();
  int right = p.left + p.width;
  for (const Control* other : form_.controls()) {
    if (other == &label || other->container() != label.container()) continue;
    const Place& q = other->place();
    const int shared = std::min(p.top + p.height, q.top + q.height) - std::max(p.top, q.top);
    const bool sameLine = 2 * shared > p.height;  // not a row that only touches it
    if (sameLine && q.left > p.left && q.left < right) right = q.left;
  }
  return TwipsToPixels(right - p.left, dpi_);
}

void FormView::userEdit(const std::function<void()>& edit) {
  if (applying_) return;
  run_(edit);
}

QWidget* FormView::make(Control& c, QWidget* parent) {
  Control* cp = &c;
  switch (c.kind()) {
    case ControlKind::Frame:
      return new QGroupBox(parent);
    case ControlKind::Label: {
      auto* l = new QLabel(parent);
      l->setWordWrap(true);
      l->setTextFormat(Qt::PlainText);
      l->setTextInteractionFlags(Qt::NoTextInteraction);
      return l;
    }
    case ControlKind::TextBox: {
      auto* e = new QLineEdit(parent);
      connect(e, &QLineEdit::textEdited, this, [this, cp](const QString& t) { userEdit([&] { cp->setText(t.toStdString()); }); });
      return e;
    }
    case ControlKind::CheckBox: {
      auto* b = new QCheckBox(parent);
      connect(b, &QCheckBox::clicked, this, [this, cp](bool on) {
        userEdit([&] { cp->setValue(on ? 1 : 0); });
        update(cp);
      });
      return b;
    }
    case ControlKind::OptionButton: {
      auto* b = new QRadioButton(parent);
      b->setAutoExclusive(false);  // the model deselects the others of its container
      connect(b, &QRadioButton::clicked, this, [this, cp](bool) {
        userEdit([&] { cp->click(); });
        update(cp);
      });
      return b;
    }
    case ControlKind::ComboBox: {
      auto* b = new QComboBox(parent);
      connect(b, &QComboBox::activated, this, [this, cp](int i) { userEdit([&] { cp->setListIndex(i); }); });
      connect(b, &QComboBox::editTextChanged, this, [this, cp](const QString& t) {
        if (cp->state().editable) userEdit([&] { cp->setText(t.toStdString()); });
      });
      return b;
    }
    case ControlKind::CommandButton: {
      auto* b = new QPushButton(parent);
      connect(b, &QPushButton::clicked, this, [this, cp] { userEdit([&] { cp->click(); }); });
      return b;
    }
    default:
      return nullptr;
  }
}

void FormView::update(const Control* c) {
  QWidget* w = widgetFor(c);
  if (!w) return;
  const ControlState& s = c->state();
  applying_ = true;
  const QSignalBlocker block(w);
  const QString caption = QString::fromStdString(s.caption);
  const QString text = QString::fromStdString(s.text);
  const Place& p = s.place;
  int top = TwipsToPixels(p.top, dpi_);
  w->setGeometry(TwipsToPixels(p.left, dpi_), top, std::max(1, TwipsToPixels(p.width, dpi_)),
                 std::max(1, TwipsToPixels(p.height, dpi_)));
  if (s.font) w->setFont(FontOf(*s.font));
  w->setToolTip(QString::fromStdString(s.toolTip));
  switch (c->kind()) {
    case ControlKind::Frame:
      static_cast<QGroupBox*>(w)->setTitle(caption);
      break;
    case ControlKind::Label: {
      auto* l = static_cast<QLabel*>(w);
      const QFont base = s.font ? FontOf(*s.font) : font();
      const int room = roomOf(*c);
      if (TwipsToPixels(p.height, dpi_) < 2 * QFontMetrics(base).lineSpacing()) {
        w->resize(std::max(1, room), w->height());
        FitCaption(l, caption, base, room);
      } else {
        l->setText(caption);
      }
      l->setAlignment(AlignOf(s.align));
      break;
    }
    case ControlKind::TextBox: {
      auto* e = static_cast<QLineEdit*>(w);
      if (e->text() != text) e->setText(text);
      e->setAlignment(AlignOf(s.align) & Qt::AlignHorizontal_Mask);
      break;
    }
    case ControlKind::CheckBox:
      static_cast<QCheckBox*>(w)->setText(caption);
      static_cast<QCheckBox*>(w)->setChecked(s.value != 0);
      break;
    case ControlKind::OptionButton:
      static_cast<QRadioButton*>(w)->setText(caption);
      static_cast<QRadioButton*>(w)->setChecked(s.value != 0);
      break;
    case ControlKind::ComboBox: {
      auto* b = static_cast<QComboBox*>(w);
      QStringList items;
      for (const auto& i : s.items) items << QString::fromStdString(i);
      QStringList current;
      for (int i = 0; i < b->count(); ++i) current << b->itemText(i);
      if (current != items) {
        b->clear();
        b->addItems(items);
      }
      b->setEditable(s.editable);
      b->setCurrentIndex(s.listIndex);
      if (s.editable && b->currentText() != text) b->setEditText(text);
      break;
    }
    case ControlKind::CommandButton:
      static_cast<QPushButton*>(w)->setText(caption);
      break;
    default:
      break;
  }
  w->setEnabled(s.enabled);
  w->setVisible(s.visible);
  applying_ = false;
}

}  // namespace voltrix
