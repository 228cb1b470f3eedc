#include "qt/shut_in.h"

#include <QWebEngineCookieStore>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

namespace zendrix::qt {

void ShutIn(QWebEnginePage& page) {
  for (const auto off :
       {QWebEngineSettings::PluginsEnabled, QWebEngineSettings::LocalStorageEnabled,
        QWebEngineSettings::JavascriptCanOpenWindows, QWebEngineSettings::JavascriptCanAccessClipboard,
        QWebEngineSettings::LocalContentCanAccessRemoteUrls,
        QWebEngineSettings::LocalContentCanAccessFileUrls, QWebEngineSettings::FullScreenSupportEnabled,
        QWebEngineSettings::AutoLoadIconsForPage, QWebEngineSettings::WebGLEnabled,
        QWebEngineSettings::ScreenCaptureEnabled, QWebEngineSettings::DnsPrefetchEnabled,
        QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::HyperlinkAuditingEnabled,
        QWebEngineSettings::ErrorPageEnabled})
    page.settings()->setAttribute(off, false);
}

void KeepNothing(QWebEngineProfile& profile) {
  profile.setHttpCacheType(QWebEngineProfile::NoCache);
  profile.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
  profile.cookieStore()->setCookieFilter([](const QWebEngineCookieStore::FilterRequest&) { return false; });
}

}  // namespace zendrix::qt
