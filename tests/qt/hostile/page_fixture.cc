#include "hostile/page_fixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QWebEngineProfile>
#include <fstream>
#include <iterator>
#include <optional>

#include "store/descriptions.h"
#include "support/hostile_corpus.h"

namespace zendrix::qt {
namespace {

constexpr int kLongestMs = 60000;
constexpr int kWakeMs = 50;
constexpr char kPath[] = "/opt/zendrix/KorvessaMonitoring.kvl";

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

WaitingLoop::WaitingLoop() {
  wake_.start(kWakeMs);
}

void WaitingLoop::ProcessMessages() {
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void ListeningWall::interceptRequest(QWebEngineUrlRequestInfo& info) {
  asked.push_back(info.requestUrl());
  RequestWall::interceptRequest(info);
}

std::string WatchedAlerts::RenderDetails(const std::string& id) {
  shown = ConsoleAlerts::RenderDetails(id);
  const alerts::AlertContext hostile = context();
  test::Harmless made;
  context().FirstEventDateTime = made.Of(context().FirstEventDateTime);
  for (alerts::NotableRecord& record : context().NotableInfo) {
    record.DateTime = made.Of(record.DateTime);
    record.Description = made.Of(record.Description);
  }
  harmless = renderer().GetCurrDesc(true, alerts::Purpose::kShown);
  context() = hostile;
  return shown;
}

void WatchedAlerts::DecideFromPage(alerts::Answer answer, const alerts::ListedAlert&) {
  decisions.push_back(answer == alerts::Answer::kBlock ? "block" : "allow");
}

PageFixture::PageFixture()
    : seams_{platform_.files,        clock_,
             platform_.locale,       platform_.host,
             platform_.shell,        platform_.instance_lock,
             platform_.services,     loop_,
             platform_.timers,       platform_.message_boxes,
             platform_.file_dialogs, platform_.colour_dialogs,
             platform_.family,       platform_.process},
      state_(seams_),
      log_(state_),
      quiet_(log_),
      alerts_(state_, log_, [this] { return reader_ ? reader_->EventTable : nullptr; }),
      pane_({state_, log_, alerts_, screen_}, view_),
      guard_(log_),
      pictures_(ZENDRIX_STAGED),
      theme_(pictures_) {
  state_.ProgramFolder = "/opt/zendrix";
  for (int number = 0; number <= 10; ++number) {
    const std::string name = "KorvessaDesc" + std::to_string(number);
    const std::string bytes = BytesOf(std::string(ZENDRIX_DATA) + "/descriptions/" + name + ".kvl");
    platform_.files.Put("/opt/zendrix/" + name + ".kvl", bytes);
    platform_.files.Put("/opt/zendrix/" + name + ".kvh", platform_.family.HashBytes(bytes) + "\r\n");
  }
  store::LoadDescArrays(state_, log_);
  state_.settings.ShowDetailsOpen = true;

  const auto logic = view_.BeforeNavigate;
  view_.BeforeNavigate = [this, logic](const std::string& url, const std::string& subject) {
    navigations_.push_back(url);
    return logic(url, subject);
  };
  const Toolkit kit{guard_, pictures_, theme_};
  widget_.reset(MakeBrowserView(view_, QStringLiteral("Details"), kit));
  widget_->resize(800, 1400);
  widget_->show();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(widget_.get(), kLongestMs));
  browser_ = BrowserIn(widget_.get());
  page_ = dynamic_cast<DetailsPage*>(browser_->page());
  page_->profile()->setUrlRequestInterceptor(&wall_);
}

PageFixture::~PageFixture() {
  widget_.reset();
}

std::vector<std::string> PageFixture::Load(const std::string& bytes) {
  platform_.files.Put(kPath, bytes);
  reader_ = std::make_unique<store::CMkvlf>(state_, log_);
  reader_->InitClass(kPath);
  std::vector<std::string> ids;
  for (store::Bookmark row = 0; row < reader_->EventTable->RowCount(); ++row)
    if (reader_->EventTable->Text(row, store::kMonitor) == "Aggregation")
      ids.push_back(std::to_string(reader_->EventTable->ID(row)));
  return ids;
}

void PageFixture::ShowOne(const std::string& reaction) {
  const auto ids = Load(
      "1795225500,HOST,7,System|0|1|first|||0\r\n"
      "1795225501,HOST,7,Running Processes|0|1|C:\\Tools\\one.exe:1234|||0\r\n"
      "1795225502,HOST,7,Aggregation|0|0.99|Running "
      "Processes=C:\\Tools\\one.exe:1234;System=first||AG,1,1|0\r\n"
      "1795225503,HOST,7,Community|0|0|observed|Running Processes=" +
      reaction + ";System=" + reaction + "||0\r\n");
  ASSERT_EQ(ids.size(), 1U);
  Show(ids[0]);
  navigations_.clear();
}

bool PageFixture::WaitFor(const std::function<bool()>& condition) {
  QElapsedTimer passed;
  passed.start();
  while (!condition() && passed.elapsed() < kLongestMs) loop_.ProcessMessages();
  return condition();
}

QVariant PageFixture::Ask(const QString& script, quint32 world) {
  const auto answer = std::make_shared<std::optional<QVariant>>();
  page_->runJavaScript(script, world, [answer](const QVariant& value) { *answer = value; });
  EXPECT_TRUE(WaitFor([&] { return answer->has_value(); })) << script.toStdString();
  return answer->value_or(QVariant());
}

void PageFixture::Settle() {
  Ask(QStringLiteral("window.settled = false; setTimeout(() => { window.settled = true; }, 100); 0"));
  EXPECT_TRUE(WaitFor([&] { return Ask(QStringLiteral("window.settled")).toBool(); }));
}

QPoint PageFixture::MiddleOf(const QString& selector) {
  const QVariantList point =
      Ask(QStringLiteral("(e => { if (!e) return []; e.scrollIntoView({block: 'center'});"
                         "const r = e.getClientRects()[0];"
                         "return [r.left + r.width / 2, r.top + r.height / 2]; })"
                         "(document.querySelector(\"%1\"))")
              .arg(selector))
          .toList();
  EXPECT_EQ(point.size(), 2) << selector.toStdString();
  return point.size() == 2 ? QPoint(point[0].toInt(), point[1].toInt()) : QPoint();
}

void PageFixture::Click(const QString& selector, Qt::MouseButton button) {
  QTest::mouseClick(Input(), button, Qt::NoModifier, MiddleOf(selector));
}

bool PageFixture::IsOwn(const QUrl& url) {
  if (url.scheme() != QLatin1String("zendrix-page")) return false;
  const QString path = url.path();
  return path.startsWith(QLatin1String("/page")) || path.startsWith(QLatin1String("/opt/zendrix/Images/")) ||
         path.startsWith(QLatin1String("/opt/zendrix%5CImages%5C")) ||
         path.startsWith(QLatin1String("/opt/zendrix\\Images\\"));
}

}  // namespace zendrix::qt
