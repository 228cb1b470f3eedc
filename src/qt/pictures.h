// The pictures beside the executable, by their path under Images without extension ("h3/28", "lst32/FlagG").
// A picture that is missing is an empty icon: everything that a picture says is also said in words.
#pragma once

#include <QHash>
#include <QIcon>
#include <QString>
#include <string>

namespace zendrix::qt {

class Pictures {
 public:
  // `folder` is the program folder.
  explicit Pictures(const std::string& folder);
  // Where the pictures lie.
  const QString& folder() const { return folder_; }
  QIcon Icon(const QString& name);
  // Picture of a numbered list; no icon for 0.
  QIcon Numbered(const QString& list, int number);
  QPixmap Pixmap(const QString& name, int edge, qreal ratio);

 private:
  QString folder_;
  QHash<QString, QIcon> icons_;
};

}  // namespace zendrix::qt
