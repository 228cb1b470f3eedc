#include "qt/details_page.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTimer>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>
#include <QWebEngineView>
#include <algorithm>

#include "qt/page_style.h"
#include "qt/shut_in.h"
#include "qt/text_edge.h"
#include "qt/theme.h"
#include "qt/user_acts.h"

namespace zendrix::qt {
namespace {

constexpr char kScheme[] = "zendrix-page";
constexpr char kHost[] = "details";
constexpr int kSmallestFont = 13;  // pixels
// The console's own pages begin so; what stands behind is the document's body.
constexpr char kAboutHead[] = "About: ";

QUrl PageUrl(int number) {
  return QUrl(QStringLiteral("%1://%2/page%3").arg(QLatin1String(kScheme), QLatin1String(kHost)).arg(number));
}

bool IsPage(const QUrl& url) {
  return url.scheme() == QLatin1String(kScheme) && url.path().startsWith(QLatin1String("/page"));
}

QString FreshNonce() {
  std::array<quint32, 4> words{};
  QRandomGenerator::system()->generate(words.begin(), words.end());
  return QString::fromLatin1(QByteArray(reinterpret_cast<const char*>(words.data()), sizeof words).toHex());
}

// Notes the link that the last plain click was made on, where no script of the page can see or change it.
// Only the browser itself makes events that count as trusted: from an input device, or on behalf of an
// assistive program.
constexpr char kNoteClicks[] = R"(
(() => {
  let pressed = null;
  addEventListener('click', event => {
    const link = event.target instanceof Element ? event.target.closest('a[href]') : null;
    const plain = event.detail <= 1 && !event.ctrlKey && !event.shiftKey && !event.altKey && !event.metaKey;
    if (event.isTrusted && plain && link) pressed = {href: link.href, at: performance.now()};
  }, true);
  window.zendrixTakeClick = href => {
    const last = pressed;
    pressed = null;
    return !!last && last.href === href && performance.now() - last.at < 3000;
  };
})();
)";

QByteArray Document(const QString& nonce, const QString& style, const QString& body) {
  const QString policy =
      QStringLiteral(
          "default-src 'none'; img-src %1:; style-src 'unsafe-inline'; script-src 'nonce-%2'; "
          "base-uri 'none'; form-action 'none'; frame-src 'none'; object-src 'none'")
          .arg(QLatin1String(kScheme), nonce);
  return QStringLiteral(
             "<!DOCTYPE html><html><head><meta charset=\"utf-8\">"
             "<meta http-equiv=\"Content-Security-Policy\" content=\"%1\">"
             "<title>Details</title><style>%2</style></head>%3</html>")
      .arg(policy, style, body)
      .toUtf8();
}

// A text as a literal of the page's language, quotes included.
QString Literal(const QString& text) {
  const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
  QString literal = QString::fromUtf8(list.mid(1, list.size() - 2));
  // Ends a script element wherever it stands, were the literal ever put into one.
  return literal.replace(QLatin1String("</"), QLatin1String("<\\/"));
}

}  // namespace

void RegisterPageScheme() {
  QWebEngineUrlScheme scheme(kScheme);
  scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
  scheme.setFlags(QWebEngineUrlScheme::SecureScheme);
  QWebEngineUrlScheme::registerScheme(scheme);
}

void PageSource::Reply(QWebEngineUrlRequestJob* job, const QByteArray& type, const QByteArray& bytes) const {
  auto* buffer = new QBuffer;
  QObject::connect(job, &QObject::destroyed, buffer, &QObject::deleteLater);
  buffer->setData(bytes);
  job->reply(type, buffer);
}

// A picture is asked for by the path that pages write, "<program folder>\Images\bug_red.png"; only its name
// counts.
void PageSource::requestStarted(QWebEngineUrlRequestJob* job) {
  const QUrl url = job->requestUrl();
  if (IsPage(url)) return Reply(job, "text/html", document_);
  QString path = QUrl::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
  path.replace(QLatin1Char('\\'), QLatin1Char('/'));
  const QString name = path.section(QLatin1Char('/'), -1);
  const bool plain =
      name.endsWith(QLatin1String(".png")) && std::all_of(name.begin(), name.end() - 4, [](QChar c) {
        return c == QLatin1Char('_') || (c.unicode() < 128 && c.isLetterOrNumber());
      });
  const bool wanted = plain && path.section(QLatin1Char('/'), -2, -2) == QLatin1String("Images");
  QFile file(images_folder_ + name);
  if (!wanted || !file.open(QIODevice::ReadOnly)) return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
  Reply(job, "image/png", file.readAll());
}

void RequestWall::interceptRequest(QWebEngineUrlRequestInfo& info) {
  info.block(info.requestUrl().scheme() != QLatin1String(kScheme));
}

struct DetailsShell::Parts {
  Parts(const QString& images_folder, std::function<std::string()> subject_now,
        std::function<void(const std::string&, const std::string&)> on_click)
      : source(images_folder), subject(std::move(subject_now)), clicked(std::move(on_click)) {
    KeepNothing(profile);
    profile.setUrlRequestInterceptor(&wall);
    profile.installUrlSchemeHandler(kScheme, &source);
  }

  PageSource source;
  RequestWall wall;
  QWebEngineProfile profile;  // without a name: nothing of it is kept
  std::function<std::string()> subject;
  std::function<void(const std::string&, const std::string&)> clicked;
  QString nonce;
  int number = 0;
  bool navigating = false;  // the console itself is on its way to a page
  bool there = false;
};

DetailsShell::DetailsShell(std::unique_ptr<Parts> parts) : shell_(std::move(parts)) {}

DetailsShell::~DetailsShell() = default;

DetailsPage::DetailsPage(const QString& images_folder, Theme& theme, std::function<std::string()> subject,
                         std::function<void(const std::string&, const std::string&)> clicked,
                         std::function<void()> navigated)
    : DetailsShell(std::make_unique<Parts>(images_folder, std::move(subject), std::move(clicked))),
      QWebEnginePage(&shell_->profile),
      theme_(theme),
      acts_(std::make_unique<UserActs>([this] { return QWebEngineView::forPage(this); })) {
  ShutIn(*this);
  QWebEngineSettings* const rules = settings();
  // Pages name a font that may not be there and sizes of another time: what stands in for them is to be
  // readable.
  rules->setFontFamily(QWebEngineSettings::StandardFont, QApplication::font().family());
  rules->setFontSize(QWebEngineSettings::MinimumFontSize, kSmallestFont);
  QWebEngineScript clicks;
  clicks.setInjectionPoint(QWebEngineScript::DocumentCreation);
  clicks.setWorldId(QWebEngineScript::ApplicationWorld);
  clicks.setRunsOnSubFrames(false);
  clicks.setSourceCode(QString::fromLatin1(kNoteClicks));
  scripts().insert(clicks);
  connect(&theme_, &Theme::Changed, this, &DetailsPage::FollowTheme);
  FollowTheme();
  // A load that was overtaken by another ends too, and so does one that the browser asks nobody about, of a
  // blank page.
  connect(this, &QWebEnginePage::loadFinished, this, [this, navigated = std::move(navigated)](bool done) {
    if (!done || !IsThere()) return;
    shell_->navigating = false;
    shell_->there = true;
    navigated();
  });
}

DetailsPage::~DetailsPage() = default;

void DetailsPage::Navigate(const std::string& url) {
  const std::size_t head = sizeof kAboutHead - 1;
  const std::string body = url.starts_with(kAboutHead) ? url.substr(head) : std::string();
  shell_->nonce = FreshNonce();
  shell_->source.SetDocument(Document(shell_->nonce, PageStyle(theme_.tokens(), theme_.dark()), ToQt(body)));
  shell_->there = false;
  shell_->navigating = true;
  acts_->Forget();
  load(PageUrl(++shell_->number));
}

void DetailsPage::FollowTheme() {
  // What shows before the document is painted.
  setBackgroundColor(theme_.tokens().base);
  if (shell_->there && IsThere())
    Run(QStringLiteral("document.querySelector('style').textContent = %1;")
            .arg(Literal(PageStyle(theme_.tokens(), theme_.dark()))));
}

bool DetailsPage::IsThere() const {
  return url() == PageUrl(shell_->number);
}

void DetailsPage::Run(const QString& script) {
  runJavaScript(script, QWebEngineScript::ApplicationWorld);
}

bool DetailsPage::SetBodyHtml(const std::string& html) {
  if (!shell_->there || !IsThere()) return false;
  Run(QStringLiteral("document.body.innerHTML = %1;").arg(Literal(ToQt(html))));
  return true;
}

bool DetailsPage::AddScript(const std::string& script) {
  if (!shell_->there || !IsThere()) return false;
  Run(QStringLiteral("{ const hidden = document.createElement('span'); hidden.style.display = 'none';"
                     "hidden.textContent = 'h'; document.body.append(hidden);"
                     "const script = document.createElement('script'); script.nonce = %1;"
                     "script.textContent = %2; document.body.append(script); }")
          .arg(Literal(shell_->nonce), Literal(ToQt(script))));
  return true;
}

void DetailsPage::AskDisplay(const std::string& id, std::function<void(std::optional<std::string>)> then) {
  runJavaScript(
      QStringLiteral("(e => e ? e.style.display : null)(document.getElementById(%1))").arg(Literal(ToQt(id))),
      QWebEngineScript::ApplicationWorld, [then = std::move(then)](const QVariant& display) {
        if (display.typeId() == QMetaType::QString)
          then(FromQt(display.toString()));
        else
          then(std::nullopt);
      });
}

void DetailsPage::SetDisplay(const std::string& id, const std::string& display) {
  Run(QStringLiteral("(e => { if (e) e.style.display = %2; })(document.getElementById(%1))")
          .arg(Literal(ToQt(id)), Literal(ToQt(display))));
}

void DetailsPage::SetFirstChildText(const std::string& id, const std::string& text) {
  Run(QStringLiteral(
          "(e => { if (e && e.firstChild) e.firstChild.nodeValue = %2; })(document.getElementById(%1))")
          .arg(Literal(ToQt(id)), Literal(ToQt(text))));
}

void DetailsPage::Stop() {
  triggerAction(QWebEnginePage::Stop);
}

bool DetailsPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool is_main_frame) {
  if (!is_main_frame) return false;
  if (shell_->navigating && type == NavigationTypeTyped && url == PageUrl(shell_->number)) return true;
  if (type != NavigationTypeLinkClicked) return false;
  const std::string address = AddressOf(url);
  if (address.empty()) return false;
  if (acts_->Take()) {
    TellClick(address);
    Run(QStringLiteral("window.zendrixTakeClick('')"));
  } else {
    AskForTrustedClick(url, address);
  }
  return false;
}

// A command is a link beside the page: "do" stands for ".../do". Only its end counts, whatever part that is
// of.
std::string DetailsPage::AddressOf(const QUrl& url) const {
  if (url.scheme() != QLatin1String(kScheme)) return url.toEncoded().toStdString();
  if (IsPage(url)) return {};
  const QString query = url.hasQuery() ? QLatin1Char('?') + url.query(QUrl::FullyEncoded) : QString();
  const QString fragment =
      url.hasFragment() ? QLatin1Char('#') + url.fragment(QUrl::FullyEncoded) : QString();
  return "about:" + FromQt(url.fileName() + query + fragment);
}

void DetailsPage::TellClick(const std::string& address) {
  // A click that was made while the next page was on its way belongs to a document that has gone.
  const std::string subject = shell_->there && IsThere() ? shell_->subject() : std::string();
  QTimer::singleShot(0, this, [this, address, subject] { shell_->clicked(address, subject); });
}

void DetailsPage::AskForTrustedClick(const QUrl& url, const std::string& address) {
  const int number = shell_->number;
  const QString href = Literal(QString::fromLatin1(url.toEncoded()));
  runJavaScript(QStringLiteral("window.zendrixTakeClick(%1)").arg(href), QWebEngineScript::ApplicationWorld,
                [this, address, number](const QVariant& trusted) {
                  if (trusted.toBool() && number == shell_->number) TellClick(address);
                });
}

}  // namespace zendrix::qt
