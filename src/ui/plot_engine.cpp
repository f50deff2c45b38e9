#include "ui/plot_engine.h"

#include <cfloat>
#include <cmath>
#include <string>

#include "model/checked.h"
#include "model/errors.h"
#include "model/number_format.h"
#include "ui/commit.h"
#include "ui/form_option.h"
#include "ui/form_plot.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// The surface takes single precision; a coordinate beyond it is an overflow
// rather than an infinity on the screen.
float F(double x) {
  Checked(x);
  if (std::fabs(x) > FLT_MAX) Raise(ErrorKind::Overflow);
  return static_cast<float>(x);
}

// Marks and grid lines stand where a running sum from `from` takes them,
// as long as `within` holds: x = from, x + step, and so on, each sum rounded
// in turn, so that rounding may lose the mark at the far edge. A step too
// small to move the sum, or millions of marks from a manual range, would
// never end: that ends the plot like any other run-time error. A 16-bit
// count of marks stays below the cap.
constexpr long kMaxMarks = 40000;

template <class Within, class Mark>
void RunningMarks(double from, double step, Within within, Mark mark) {
  long count = 0;
  for (double v = from; within(v);) {
    if (++count > kMaxMarks) Raise(ErrorKind::Overflow);
    mark(v);
    const double next = Checked(v + step);
    if (next == v) Raise(ErrorKind::Overflow);
    v = next;
  }
}

std::string UnitLine(const std::string& quantity, double decade) {
  const std::string factor = FormatNumber(decade, "0E-0");
  if (quantity == "current I") return "I /A  " + factor;
  if (quantity == "resistance R") return "R /Ohm  " + factor;
  if (quantity == "conductance Cond") return "Cond *Ohm  " + factor;
  if (quantity == "surface concentration C") return "C /M  " + factor;
  return factor;
}

void DrawCurves(Workbench& wb, DrawingSurface& s, double dx, double dy) {
  const Experiment& e = wb.experiment;
  const CurveStore& st = wb.store;
  const long first = static_cast<long>(e.First), last = static_cast<long>(e.Last);
  const long curves = static_cast<long>(e.NCurves);
  for (long r = 1; r <= curves; ++r) {
    s.curveRow(static_cast<int>(r));
    switch (st.LineStyle(r)) {
      case 1:
        for (long i = first; i <= last; ++i) s.point(F(st.XData(i)), F(st.YData(r, i)));
        break;
      case 2:
        for (long i = first; i <= last; ++i) {
          const double x1 = st.XData(i) - 0.005 * dx, y1 = st.YData(r, i) - 0.005 * dy;
          s.box(F(x1), F(y1), F(x1 + 0.01 * dx), F(y1 + 0.01 * dy));
        }
        break;
      case 3: {
        double px = st.XData(first), py = st.YData(r, first);
        s.point(F(px), F(py));
        for (long i = first + 1; i <= last; ++i) {
          const double x = st.XData(i), y = st.YData(r, i);
          s.line(F(px), F(py), F(x), F(y));
          px = x;
          py = y;
        }
        break;
      }
      default:
        break;
    }
  }
  s.curveRow(0);
}

void Plot(Workbench& wb) {
  wb.formOption().OK();
  FormOption& opt = wb.formOption();
  Experiment& e = wb.experiment;
  const CurveStore& st = wb.store;
  DrawingSurface& s = wb.formPlot().surface();
  wb.formPlot().show();
  s.show();
  s.clear();

  const bool xAuto = opt.control("Xauto").checked();
  const bool yAuto = opt.control("Yauto").checked();
  const long first = static_cast<long>(e.First), last = static_cast<long>(e.Last);

  if (xAuto) {
    double xmax = st.XData(first), xmin = st.XData(last);
    for (long i = first; i <= last; ++i) {
      const double x = st.XData(i);
      if (x > xmax) xmax = x;
      if (x < xmin) xmin = x;
    }
    e.Xmax = xmax;
    e.Xmin = xmin;
  }
  if (yAuto) {
    double ymax = 0, ymin = 0;
    const long curves = static_cast<long>(e.NCurves);
    for (long r = 1; r <= curves; ++r)
      for (long i = first; i <= last; ++i) {
        const double y = st.YData(r, i);
        if (y > ymax) ymax = y;
        if (y < ymin) ymin = y;
      }
    e.Ymax = ymax;
    e.Ymin = ymin;
  }

  // The decade of the Y axis; none found leaves 1E6 and the limits as they are.
  const double m = std::fmax(e.Ymax, std::fabs(e.Ymin));
  double decade = 1;
  bool found = false;
  for (int k = -15; k <= 6; ++k) {
    decade = std::pow(10.0, k);
    if (decade <= m && m < std::pow(10.0, k + 1)) {
      found = true;
      break;
    }
  }
  if (found && yAuto) {
    e.Ymax = Checked((Fix(Div(e.Ymax, decade)) + 1) * decade);
    e.Ymin = Checked((Fix(Div(e.Ymin, decade)) - 1) * decade);
  }
  if (yAuto && e.Ymax <= 0) e.Ymax = decade;

  const double xmin = e.Xmin, xmax = e.Xmax, ymin = e.Ymin, ymax = e.Ymax;
  const double dy = Checked(ymax - ymin), dx = Checked(xmax - xmin);
  if (dx == 0 || dy == 0) {
    wb.platform.messages.show("Error: No data!");
    return;
  }

  const double left = Checked(xmin - 0.1 * dx), right = Checked(xmax + 0.1 * dx);
  const double top = Checked(ymax + 1.5 * decade), bottom = Checked(ymin - 1.8 * decade);
  s.setScale(F(left), F(top), F(right), F(bottom));
  s.setTextPosition(F(left), F(top));
  s.printLine(UnitLine(opt.control("ComboY").text(), decade));

  if (ymin < 0 && ymax > 0) {
    s.setDashed(true);
    s.line(F(xmin), 0, F(xmax), 0);
    s.setDashed(false);
  }
  const bool reversed = opt.control("CheckXdir").checked();
  if (reversed) s.setScale(F(right), F(top), F(left), F(bottom));

  s.box(F(xmin), F(ymin), F(xmax), F(ymax));
  s.setTextPosition(F((xmin + xmax) / 2), F(ymin - decade));
  s.printLine("E /V");

  DrawCurves(wb, s, dx, dy);

  // X marks about 0.1 apart on an axis in volts.
  const double xstep = Div(dx, CInt(Checked(10 * dx)));
  RunningMarks(xmin, xstep, [&](double x) { return x <= xmax; }, [&](double x) {
    s.line(F(x), F(ymin), F(x), F(ymin + 0.02 * dy));
    s.setTextPosition(F(x), F(ymin));
    s.printLine(FormatNumber(x, "0.##"));
  });

  // Y marks in units of the decade, on the edge where the axis begins.
  if (reversed) {
    const double ystep = Div(ymin, CInt(Div(ymin, decade)));
    RunningMarks(ymax, -ystep, [&](double y) { return y >= ymin; }, [&](double y) {
      s.line(F(xmax), F(y), F(xmax - 0.01 * dx), F(y));
      s.setTextPosition(F(xmax + 0.04 * dx), F(y));
      s.printLine(FormatNumber(Div(y, decade), "0"));
    });
  } else {
    const double ystep = Div(ymax, CInt(Div(ymax, decade)));
    RunningMarks(ymin, ystep, [&](double y) { return y <= ymax; }, [&](double y) {
      s.line(F(xmin), F(y), F(xmin + 0.01 * dx), F(y));
      s.setTextPosition(F(xmin - 0.04 * dx), F(y));
      s.printLine(FormatNumber(Div(y, decade), "0"));
    });
  }

  if (e.GridFlag) {
    RunningMarks(xmin, xstep, [&](double x) { return x < xmax; }, [&](double x) { s.line(F(x), F(ymin), F(x), F(ymax)); });
    const double ystep = Div(ymax, CInt(Div(ymax, decade)));
    RunningMarks(ymin, ystep, [&](double y) { return y < ymax; }, [&](double y) { s.line(F(xmin), F(y), F(xmax), F(y)); });
  }
}

}  // namespace

void PlotCurves(Workbench& wb) {
  // A run-time error ends the plot silently; what is drawn stays.
  try {
    Plot(wb);
  } catch (const RunError&) {
  }
}

void RefreshPlot(Workbench& wb) {
  PlotDataStep(wb);
  PlotCurves(wb);
}

}  // namespace voltrix
