// A mail server that answers as a test wants, and keeps what it took.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "mail/transport.h"

namespace zendrix::mail {

class ScriptedTransport : public Transport {
 public:
  // What becomes of the next mails; without any they are taken.
  void Next(Delivery delivery) { next_.push_back(std::move(delivery)); }
  // What becomes of every mail from now on, behind those.
  void Always(Delivery delivery) { always_ = std::move(delivery); }

  Delivery Send(const MailSettings& settings, const std::string& text) override {
    ++tries;
    if (sending) sending();
    Delivery delivery = always_;
    if (!next_.empty()) {
      delivery = next_.front();
      next_.pop_front();
    }
    if (delivery.outcome == Delivery::Outcome::kSent) taken.emplace_back(settings, text);
    return delivery;
  }

  std::function<void()> sending;  // called while a mail is under way
  int tries = 0;
  std::vector<std::pair<MailSettings, std::string>> taken;

 private:
  std::deque<Delivery> next_;
  Delivery always_ = {Delivery::Outcome::kSent, ""};
};

}  // namespace zendrix::mail
