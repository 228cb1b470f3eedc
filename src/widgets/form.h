// A window as the logic sees it: a name, a title, whether it is shown and in what state, and an unload that
// can be refused. The list of open forms is what "is this form loaded" and "close everything" work on, and it
// decides who is disabled while something modal is open.
//
// A form comes into being, is loaded once, and is shown and hidden any number of times until it unloads. Its
// window goes when it unloads, and so a form unloads before its controls are destroyed: the last place for
// that is the destructor of the most derived class.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "widgets/observed.h"

namespace zendrix::widgets {

enum class WindowState { kNormal = 0, kMinimised = 1, kMaximised = 2 };

// Why a form is asked to unload.
enum class UnloadCause { kCloseBox, kCode };

class FormList;

class Form {
 public:
  // Opens the form: it is in `forms` from now until Unload (or its destruction).
  Form(FormList& forms, std::string name);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& name() const { return name_; }
  Observed<std::string> title;
  Observed<bool> visible{false};
  Observed<bool> enabled{true};
  Observed<WindowState> state{WindowState::kNormal};
  // Place in the screen toolkit's units; only ever read back by the same program.
  Observed<int> left{0}, top{0}, width{0}, height{0};

  FormList& list() const { return forms_; }
  // What stands between coming into being and being shown; runs once, when the window is there.
  void Load();
  // The window became the active one.
  void Activate() { OnActivate(); }
  // Not unloaded yet.
  bool loaded() const { return loaded_; }
  // Asks QueryUnload, then runs OnUnload, hides the form and takes it from the list. False when the unload
  // was refused. The form may be unloaded or destroyed meanwhile; each step then still happens only once.
  bool Unload(UnloadCause cause = UnloadCause::kCode);
  // Stays above the windows of other programs.
  Observed<bool> on_top{false};
  // Asks the window to come to the front. One that is minimised stays so: it has the front of its own task
  // bar entry.
  Signal<> bring_forward;
  // Shows the form, out of the task bar if it is there, in front of the others.
  void BringUp();
  // Asks to be painted now, without waiting for the event loop.
  Signal<> repaint;
  // Asks for the middle of the screen area that windows may use.
  Signal<> centre;
  // Raised when the form has left the list.
  Signal<> unloaded;

 protected:
  virtual void OnLoad() {}
  virtual void OnActivate() {}
  // Returns false to refuse.
  virtual bool QueryUnload(UnloadCause) { return true; }
  virtual void OnUnload() {}

 private:
  FormList& forms_;
  std::string name_;
  bool was_loaded_ = false;
  bool loaded_ = true;
  std::shared_ptr<void> alive_ = std::make_shared<char>();
};

class ModalScope;

class FormList {
 public:
  const std::vector<Form*>& open() const { return open_; }
  // True if an open form has exactly this name.
  bool IsFormLoaded(const std::string& name) const;
  // The open form of this name, or null.
  Form* Find(const std::string& name) const;

 private:
  friend class Form;
  friend class ModalScope;
  void Leave(Form* form);

  std::vector<Form*> open_;
  std::vector<ModalScope*> modal_;  // the outermost first
};

// Something modal is open for as long as this object lives: a message box, a file dialog, or `modal`, a form.
// Every other form that is open at its beginning is disabled, and enabled again at its end unless it was
// disabled before. One rule for every kind of box and window, on the screen and in memory.
class ModalScope {
 public:
  explicit ModalScope(FormList& forms, const Form* modal = nullptr);
  ~ModalScope();
  ModalScope(const ModalScope&) = delete;
  ModalScope& operator=(const ModalScope&) = delete;

 private:
  friend class FormList;
  FormList& forms_;
  std::vector<Form*> disabled_;
};

}  // namespace zendrix::widgets
