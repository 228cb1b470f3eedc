#include "qt/qt_form_host.h"

#include <QApplication>
#include <QEventLoop>
#include <QWindow>
#include <algorithm>
#include <stdexcept>
#include <utility>

#include "qt/form_views.h"

namespace zendrix::qt {
namespace {

// Keeps one window above another without making it the other's child, which would go with it.
void StandAbove(QWidget& view, QWidget* owner) {
  if (!owner) return;
  view.winId();
  owner->winId();
  view.windowHandle()->setTransientParent(owner->windowHandle());
}

}  // namespace

QtFormHost::~QtFormHost() {
  for (const auto* windows : {&windows_, &leaving_})
    for (const Window& window : *windows) delete window.view;
}

QWidget* QtFormHost::Find(const widgets::Form* form) const {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [&](const Window& window) { return window.form == form; });
  return found == windows_.end() ? nullptr : found->view.data();
}

bool QtFormHost::HasWindow(const widgets::Form& form) const {
  return Find(&form) || std::any_of(leaving_.begin(), leaving_.end(), [&](const Window& window) {
           return window.form == &form && window.view;
         });
}

void QtFormHost::MakeWindow(widgets::Form& form, const widgets::ShowOptions& options) {
  QWidget* view = Find(&form);
  if (!view) {
    view = MakeView(form, kit_).release();
    if (!view) throw std::logic_error("no window shows the form " + form.name());
    windows_.push_back({&form, view, form.unloaded.Connect([this, &form] { LetGo(&form); })});
  }
  view->setAttribute(Qt::WA_ShowWithoutActivating, !options.take_focus);
  if (!options.take_focus) view->setWindowFlag(Qt::WindowDoesNotAcceptFocus);
  if (options.on_top) view->setWindowFlag(Qt::WindowStaysOnTopHint);
  view->setWindowModality(options.modal ? Qt::ApplicationModal : Qt::NonModal);
  // What stands above all windows needs none of its own below it, with which it would be minimised. But a
  // modal window shuts out whatever does not belong to it.
  StandAbove(*view, options.on_top ? QApplication::activeModalWidget() : Find(options.owner));
}

void QtFormHost::RunModal(widgets::Form& form) {
  QEventLoop loop;
  const widgets::Connection hidden = form.visible.changed.Connect([&] {
    if (!form.visible) loop.quit();
  });
  const widgets::Connection gone = form.unloaded.Connect([&] { loop.quit(); });
  if (form.loaded() && form.visible) loop.exec();
}

void QtFormHost::TakeDown(const widgets::Form& form) {
  std::vector<QPointer<QWidget>> views;
  for (auto* windows : {&windows_, &leaving_}) {
    std::erase_if(*windows, [&](const Window& window) {
      if (window.form == &form) views.push_back(window.view);
      return window.form == &form;
    });
  }
  for (const auto& view : views) delete view.data();
}

void QtFormHost::LetGo(const widgets::Form* form) {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [&](const Window& window) { return window.form == form; });
  if (found == windows_.end()) return;
  const QPointer<QWidget> view = found->view;
  windows_.erase(found);
  std::erase_if(leaving_, [](const Window& window) { return window.view.isNull(); });
  if (!view) return;
  leaving_.push_back({form, view, {}});
  view->hide();
  if (view) view->deleteLater();
}

}  // namespace zendrix::qt
