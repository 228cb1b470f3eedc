#include "qt/admin/frm_chart.h"

#include <QBoxLayout>

#include "qt/bind_chart.h"

namespace zendrix::qt {

ChartWindow::ChartWindow(admin::frmChart& form, const Toolkit& toolkit) : FormWindow(form, toolkit) {
  constexpr int kMargin = 12;
  resize(900, 560);
  setMinimumSize(420, 260);
  escape_closes = true;
  auto* central = new QWidget;
  auto* column = new QVBoxLayout(central);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  auto* chart = new ChartView(form.LargeChart, QStringLiteral("Timeline"), kit());
  column->addWidget(chart);
  setCentralWidget(central);
  chart->setFocus();
}

}  // namespace zendrix::qt
