#include "agent/sources/bus_stream.h"

#include <systemd/sd-bus.h>

#include <cstring>
#include <list>
#include <map>
#include <string_view>
#include <utility>

namespace zendrix::agent {
namespace {

constexpr char kLogind[] = "org.freedesktop.login1";
constexpr char kLogindPath[] = "/org/freedesktop/login1";
constexpr char kLogindManager[] = "org.freedesktop.login1.Manager";
constexpr char kSession[] = "org.freedesktop.login1.Session";
constexpr char kSystemd[] = "org.freedesktop.systemd1";
constexpr char kSystemdPath[] = "/org/freedesktop/systemd1";
constexpr char kSystemdManager[] = "org.freedesktop.systemd1.Manager";
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";
constexpr char kBus[] = "org.freedesktop.DBus";
constexpr std::uint64_t kAnswerUs = 2'000'000;
constexpr int kMostOfOneRead = 500;
constexpr std::size_t kMostAsked = 1000;  // answers that are waited for

struct FreeBus {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
struct FreeMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, FreeMessage>;

std::string Words(int result) {
  return std::strerror(-result);
}

// The properties of a session, "a{sv}"; what is missing stays empty.
void ReadSession(sd_bus_message* message, BusSession& session) {
  std::map<std::string_view, std::string> texts = {
      {"Name", ""}, {"TTY", ""}, {"Display", ""}, {"RemoteHost", ""}, {"Class", ""}};
  int remote = 0;
  if (sd_bus_message_enter_container(message, 'a', "{sv}") < 0) return;
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* name = nullptr;
    const char* value = nullptr;
    const char* type = nullptr;
    char kind = 0;
    if (sd_bus_message_read(message, "s", &name) < 0) return;
    const auto wanted = texts.find(name);
    const bool known = sd_bus_message_peek_type(message, &kind, &type) > 0 && kind == 'v' && type != nullptr;
    if (known && wanted != texts.end() && std::string_view(type) == "s") {
      if (sd_bus_message_read(message, "v", "s", &value) < 0) return;
      wanted->second = value;
    } else if (known && std::string_view(name) == "Remote" && std::string_view(type) == "b") {
      if (sd_bus_message_read(message, "v", "b", &remote) < 0) return;
    } else if (sd_bus_message_skip(message, "v") < 0) {
      return;
    }
    if (sd_bus_message_exit_container(message) < 0) return;
  }
  session.user = texts["Name"];
  session.line = texts["TTY"].empty() ? texts["Display"] : texts["TTY"];
  session.purpose = texts["Class"];
  if (remote != 0) session.from = texts["RemoteHost"].empty() ? "an unknown computer" : texts["RemoteHost"];
}

class SystemBusStream : public BusStream {
 public:
  // The refusal; empty when it is open.
  std::string Open() {
    sd_bus* bus = nullptr;
    if (const int result = sd_bus_open_system(&bus); result < 0) {
      return "the system bus cannot be reached: " + Words(result);
    }
    bus_.reset(bus);
    sd_bus_set_method_call_timeout(bus, kAnswerUs);
    // Asked for before the list, so that nothing falls between.
    int result = Match(kLogind, kLogindPath, kLogindManager, "SessionNew", OnNew);
    if (result >= 0) result = Match(kLogind, kLogindPath, kLogindManager, "SessionRemoved", OnRemoved);
    if (result >= 0) {
      result =
          sd_bus_add_match(bus, nullptr,
                           "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                           "member='NameOwnerChanged',arg0='org.freedesktop.login1'",
                           OnOwner, this);
    }
    if (result < 0) return "the system bus does not take a wish: " + Words(result);
    // Without systemd, or where it does not want to tell, units are looked at as ever.
    if (Match(kSystemd, kSystemdPath, kSystemdManager, "UnitFilesChanged", OnUnits) >= 0) {
      sd_bus_call_method(bus, kSystemd, kSystemdPath, kSystemdManager, "Subscribe", nullptr, nullptr, "");
    }
    return ReadSessions();
  }

  std::vector<BusNews> Read() override {
    int result = 1;
    for (int i = 0; i < kMostOfOneRead && result > 0 && gone_.empty(); ++i) {
      result = sd_bus_process(bus_.get(), nullptr);
    }
    if (result < 0 || sd_bus_is_open(bus_.get()) <= 0) gone_ = "the system bus went away";
    auto news = std::exchange(news_, {});
    if (!gone_.empty()) news.push_back({BusNews::Kind::kGone, {}, gone_});
    return news;
  }

 private:
  struct Asked {
    SystemBusStream* stream = nullptr;
    std::string id;
  };

  int Match(const char* sender, const char* path, const char* interface, const char* member,
            sd_bus_message_handler_t handler) {
    return sd_bus_match_signal(bus_.get(), nullptr, sender, path, interface, member, handler, this);
  }

  std::string ReadSessions() {
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call_method(bus_.get(), kLogind, kLogindPath, kLogindManager, "ListSessions",
                                          nullptr, &reply, "");
    const Message list(reply);
    if (result < 0) return "logind does not answer: " + Words(result);
    owner_ = sd_bus_message_get_sender(reply);
    if (sd_bus_message_enter_container(reply, 'a', "(susso)") < 0) return "logind's answer cannot be read";
    const char* id = nullptr;
    const char* user = nullptr;
    const char* path = nullptr;
    while (sd_bus_message_read(reply, "(susso)", &id, nullptr, &user, nullptr, &path) > 0) {
      BusSession session;
      session.id = id;
      sd_bus_message* answer = nullptr;
      const int asked = sd_bus_call_method(bus_.get(), kLogind, path, kProperties, "GetAll", nullptr, &answer,
                                           "s", kSession);
      const Message facts(answer);
      if (asked == -ETIMEDOUT) return "logind does not answer: " + Words(asked);
      if (asked < 0) continue;  // it ended meanwhile
      ReadSession(answer, session);
      news_.push_back({BusNews::Kind::kSession, std::move(session), ""});
    }
    return "";
  }

  bool IsFromLogind(sd_bus_message* message) const {
    const char* const sender = sd_bus_message_get_sender(message);
    return sender != nullptr && owner_ == sender;
  }

  static int OnNew(sd_bus_message* message, void* user, sd_bus_error*) {
    auto& self = *static_cast<SystemBusStream*>(user);
    const char* id = nullptr;
    const char* path = nullptr;
    if (!self.IsFromLogind(message) || sd_bus_message_read(message, "so", &id, &path) < 0) return 0;
    self.Ask(id, path);
    return 0;
  }

  static int OnRemoved(sd_bus_message* message, void* user, sd_bus_error*) {
    auto& self = *static_cast<SystemBusStream*>(user);
    const char* id = nullptr;
    if (!self.IsFromLogind(message) || sd_bus_message_read(message, "s", &id) < 0) return 0;
    // An answer about it that is still to come would come too late.
    for (const Asked& asked : self.asked_) {
      if (asked.id == id) self.unasked_.push_back(id);
    }
    if (self.unasked_.empty() || self.unasked_.back() != id) self.Ended(id);
    return 0;
  }

  static int OnOwner(sd_bus_message* message, void* user, sd_bus_error*) {
    auto& self = *static_cast<SystemBusStream*>(user);
    const char* const sender = sd_bus_message_get_sender(message);
    if (sender != nullptr && std::string_view(sender) == kBus) self.gone_ = "logind ended";
    return 0;
  }

  static int OnUnits(sd_bus_message*, void* user, sd_bus_error*) {
    auto& news = static_cast<SystemBusStream*>(user)->news_;
    if (news.empty() || news.back().kind != BusNews::Kind::kUnitsChanged)
      news.push_back({BusNews::Kind::kUnitsChanged, {}, ""});
    return 0;
  }

  static int OnFacts(sd_bus_message* reply, void* user, sd_bus_error*) {
    const Asked asked = *static_cast<Asked*>(user);
    SystemBusStream& self = *asked.stream;
    self.asked_.remove_if([&](const Asked& one) { return &one == user; });
    BusSession session;
    session.id = asked.id;
    if (sd_bus_message_is_method_error(reply, nullptr) <= 0) ReadSession(reply, session);
    self.Came(std::move(session));
    return 0;
  }

  void Ask(const char* id, const char* path) {
    if (asked_.size() < kMostAsked) {
      asked_.push_back({this, id});
      const int result = sd_bus_call_method_async(bus_.get(), nullptr, kLogind, path, kProperties, "GetAll",
                                                  OnFacts, &asked_.back(), "s", kSession);
      if (result >= 0) return;
      asked_.pop_back();
    }
    Came({id, "", "", "", ""});
  }

  // A session that ended before the answer about it came is told with its end.
  void Came(BusSession session) {
    const std::string id = session.id;
    news_.push_back({BusNews::Kind::kSession, std::move(session), ""});
    for (auto ended = unasked_.begin(); ended != unasked_.end(); ++ended) {
      if (*ended != id) continue;
      unasked_.erase(ended);
      Ended(id);
      return;
    }
  }

  void Ended(const std::string& id) {
    news_.push_back({BusNews::Kind::kSessionEnded, {id, "", "", "", ""}, ""});
  }

  std::unique_ptr<sd_bus, FreeBus> bus_;
  std::string owner_;  // logind's own name on the bus
  std::list<Asked> asked_;
  std::list<std::string> unasked_;  // ended while their answers are waited for
  std::vector<BusNews> news_;
  std::string gone_;
};

}  // namespace

OpenedBus OpenSystemBus() {
  auto stream = std::make_unique<SystemBusStream>();
  std::string refusal = stream->Open();
  if (!refusal.empty()) return {nullptr, std::move(refusal)};
  return {std::move(stream), ""};
}

}  // namespace zendrix::agent
