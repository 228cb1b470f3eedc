#include "qt/pane_looks.h"

#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QVariant>

namespace zendrix::qt {

QWidget* Card(QLayout* layout) {
  auto* card = new QFrame;
  card->setProperty("role", QStringLiteral("card"));
  card->setLayout(layout);
  layout->setContentsMargins(16, 14, 16, 14);
  return card;
}

QLabel* WithRole(QLabel* label, const char* role) {
  label->setProperty("role", QString::fromLatin1(role));
  return label;
}

}  // namespace zendrix::qt
