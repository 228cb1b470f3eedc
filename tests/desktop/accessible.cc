#include "desktop/accessible.h"

#include <utility>

namespace zendrix::desktop {
namespace {

constexpr int kMostChildren = 2000;

std::string Taken(gchar* text) {
  std::string taken = text ? text : "";
  g_free(text);
  return taken;
}

// One that is told to the library and not looked at: what has gone is no news here.
class Failure {
 public:
  Failure() = default;
  ~Failure() { g_clear_error(&error_); }
  Failure(const Failure&) = delete;
  Failure& operator=(const Failure&) = delete;
  GError** out() { return &error_; }

 private:
  GError* error_ = nullptr;
};

template <class Interface>
std::shared_ptr<Interface> Owned(Interface* interface) {
  return std::shared_ptr<Interface>(interface, [](Interface* object) {
    if (object) g_object_unref(object);
  });
}

std::optional<Accessible> Present(AtspiAccessible* object) {
  return object ? std::optional<Accessible>(object) : std::nullopt;
}

std::optional<Accessible>& LastFocused() {
  static std::optional<Accessible> last;
  return last;
}

void NoteFocus(AtspiEvent* event, void*) {
  if (event->detail1 && event->source)
    LastFocused() = Accessible(ATSPI_ACCESSIBLE(g_object_ref(event->source)));
  g_boxed_free(ATSPI_TYPE_EVENT, event);
}

}  // namespace

Accessible::Accessible(AtspiAccessible* object) : object_(Owned(object)) {}

std::optional<Accessible> Accessible::Program(const std::string& name, int process) {
  const Accessible desktop(atspi_get_desktop(0));
  for (const Accessible& program : desktop.Children()) {
    Failure failure;
    if (program.name() != name) continue;
    if (static_cast<int>(atspi_accessible_get_process_id(program.object_.get(), failure.out())) != process)
      continue;
    atspi_accessible_set_cache_mask(program.object_.get(), ATSPI_CACHE_NONE);
    return program;
  }
  return std::nullopt;
}

void Accessible::ListenForFocus() {
  Failure failure;
  static AtspiEventListener* const listener = atspi_event_listener_new(NoteFocus, nullptr, nullptr);
  atspi_event_listener_register(listener, "object:state-changed:focused", failure.out());
}

std::optional<Accessible> Accessible::Focused() {
  return LastFocused();
}

std::string Accessible::role() const {
  Failure failure;
  return Taken(atspi_accessible_get_role_name(object_.get(), failure.out()));
}

std::string Accessible::name() const {
  Failure failure;
  return Taken(atspi_accessible_get_name(object_.get(), failure.out()));
}

std::string Accessible::description() const {
  Failure failure;
  return Taken(atspi_accessible_get_description(object_.get(), failure.out()));
}

std::string Accessible::text() const {
  Failure failure;
  const auto text = Owned(atspi_accessible_get_text_iface(object_.get()));
  if (!text) return name() + " " + description();
  const int length = atspi_text_get_character_count(text.get(), failure.out());
  return length > 0 ? Taken(atspi_text_get_text(text.get(), 0, length, failure.out())) : name();
}

bool Accessible::Is(AtspiStateType state) const {
  const auto states = Owned(atspi_accessible_get_state_set(object_.get()));
  return states && atspi_state_set_contains(states.get(), state);
}

std::vector<Accessible> Accessible::Children() const {
  Failure failure;
  std::vector<Accessible> children;
  const int count = atspi_accessible_get_child_count(object_.get(), failure.out());
  for (int i = 0; i < count && i < kMostChildren; ++i) {
    Failure gone;
    if (AtspiAccessible* const child = atspi_accessible_get_child_at_index(object_.get(), i, gone.out()))
      children.emplace_back(child);
  }
  return children;
}

std::vector<std::string> Accessible::Actions() const {
  std::vector<std::string> names;
  Failure failure;
  const auto action = Owned(atspi_accessible_get_action_iface(object_.get()));
  const int count = action ? atspi_action_get_n_actions(action.get(), failure.out()) : 0;
  for (int i = 0; i < count; ++i) {
    Failure gone;
    names.push_back(Taken(atspi_action_get_action_name(action.get(), i, gone.out())));
  }
  return names;
}

bool Accessible::Act(const std::string& wanted) const {
  Failure failure;
  const auto action = Owned(atspi_accessible_get_action_iface(object_.get()));
  const auto names = Actions();
  for (std::size_t i = 0; i < names.size(); ++i)
    if (wanted.empty() || names[i] == wanted)
      return atspi_action_do_action(action.get(), static_cast<gint>(i), failure.out());
  return false;
}

bool Accessible::TakeFocus() const {
  Failure failure;
  const auto component = Owned(atspi_accessible_get_component_iface(object_.get()));
  return component && atspi_component_grab_focus(component.get(), failure.out());
}

std::optional<double> Accessible::Value() const {
  Failure failure;
  const auto value = Owned(atspi_accessible_get_value_iface(object_.get()));
  if (!value) return std::nullopt;
  return atspi_value_get_current_value(value.get(), failure.out());
}

Place Accessible::place() const {
  Failure failure;
  const auto component = Owned(atspi_accessible_get_component_iface(object_.get()));
  if (!component) return {};
  AtspiRect* const rect =
      atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, failure.out());
  if (!rect) return {};
  const Place place{rect->x, rect->y, rect->width, rect->height};
  g_free(rect);
  return place;
}

int Accessible::Rows() const {
  Failure failure;
  const auto table = Owned(atspi_accessible_get_table_iface(object_.get()));
  return table ? atspi_table_get_n_rows(table.get(), failure.out()) : 0;
}

std::optional<Accessible> Accessible::Cell(int row, int column) const {
  Failure failure;
  const auto table = Owned(atspi_accessible_get_table_iface(object_.get()));
  return Present(table ? atspi_table_get_accessible_at(table.get(), row, column, failure.out()) : nullptr);
}

std::optional<Accessible> Accessible::Heading(int column) const {
  Failure failure;
  const auto table = Owned(atspi_accessible_get_table_iface(object_.get()));
  return Present(table ? atspi_table_get_column_header(table.get(), column, failure.out()) : nullptr);
}

bool Accessible::Walk(const std::function<bool(const Accessible&)>& visit) const {
  const bool program = role() == "application";  // has no place on the screen itself
  if (!program && !Showing()) return false;
  if (visit(*this)) return true;
  for (const Accessible& child : Children())
    if (child.Walk(visit)) return true;
  return false;
}

std::optional<Accessible> Accessible::Find(const std::function<bool(const Accessible&)>& wanted) const {
  std::optional<Accessible> found;
  Walk([&](const Accessible& thing) {
    if (!wanted(thing)) return false;
    found = thing;
    return true;
  });
  return found;
}

std::optional<Accessible> Accessible::Find(const std::string& role, const std::string& name) const {
  return Find([&](const Accessible& thing) { return thing.name() == name && thing.role() == role; });
}

std::string Accessible::Tree() const {
  std::string tree;
  const std::function<void(const Accessible&, int)> add = [&](const Accessible& thing, int depth) {
    const bool program = thing.role() == "application";
    if (!program && !thing.Showing()) return;
    tree +=
        std::string(static_cast<std::size_t>(2 * depth), ' ') + thing.role() + " \"" + thing.name() + "\"";
    if (thing.Is(ATSPI_STATE_FOCUSED)) tree += " focused";
    if (!program && !thing.Is(ATSPI_STATE_ENABLED)) tree += " disabled";
    for (const std::string& action : thing.Actions()) tree += " [" + action + "]";
    tree += "\n";
    for (const Accessible& child : thing.Children()) add(child, depth + 1);
  };
  add(*this, 0);
  return tree;
}

}  // namespace zendrix::desktop
