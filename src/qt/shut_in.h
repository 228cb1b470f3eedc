// What every embedded browser of the console has in common, whatever it shows: what a page cannot have, and a
// profile that keeps nothing.
#pragma once

class QWebEnginePage;
class QWebEngineProfile;

namespace zendrix::qt {

// Switches off what no page of the console needs: plugins, storage, the clipboard, other windows, local
// files, the screen, and everything that fetches or tells by itself.
void ShutIn(QWebEnginePage& page);

// No cache and no cookies. The profile is one without a name, which has no place on the disk.
void KeepNothing(QWebEngineProfile& profile);

}  // namespace zendrix::qt
