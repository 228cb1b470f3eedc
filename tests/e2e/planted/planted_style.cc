// A plugin that somebody has planted: leaves a mark as soon as it is loaded.
#include <QStylePlugin>
#include <cstdio>
#include <cstdlib>

class PlantedStyle : public QStylePlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QStyleFactoryInterface_iid FILE "planted_style.json")

 public:
  QStyle* create(const QString&) override { return nullptr; }
};

namespace {

[[gnu::constructor]] void LeaveMark() {
  if (const char* const mark = std::getenv("ZENDRIX_PLANTED_MARK"))
    if (std::FILE* const file = std::fopen(mark, "w")) std::fclose(file);
}

}  // namespace

#include "planted_style.moc"
