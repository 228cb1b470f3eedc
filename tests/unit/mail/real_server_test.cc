// The program and its road through libcurl against a real mail server on the loopback.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>

#include "alert_text.h"
#include "mail/curl_transport.h"
#include "mail/message.h"
#include "platform/memory/memory_family.h"
#include "support/temporary_folder.h"

namespace zendrix::mail {
namespace {

using test::AlertText;
using test::TakeApart;
using ::testing::HasSubstr;
using Outcome = Delivery::Outcome;

// The interpreter for which the distribution packages its modules.
constexpr char kPython[] = "/usr/bin/python3";

std::string WhatIsMissing() {
  if (std::system("/usr/bin/python3 -c 'import aiosmtpd' >/dev/null 2>&1") != 0) return "python3-aiosmtpd";
  if (std::system("openssl version >/dev/null 2>&1") != 0) return "openssl";
  return "";
}

class MailServer {
 public:
  explicit MailServer(const std::vector<std::string>& options) {
    int to[2];
    int from[2];
    EXPECT_EQ(pipe2(to, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(from, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, to[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, from[1], STDOUT_FILENO);
    // It tells at length of clients that leave.
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<std::string> words = {kPython, ZENDRIX_MAIL_SERVER};
    words.insert(words.end(), options.begin(), options.end());
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    EXPECT_EQ(posix_spawn(&pid_, kPython, &actions, nullptr, arguments.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(to[0]);
    close(from[1]);
    in_ = to[1];
    out_ = from[0];
    port = std::atoi(Line().c_str());
    EXPECT_GT(port, 0) << "the mail server did not come up";
  }
  MailServer(const MailServer&) = delete;
  MailServer& operator=(const MailServer&) = delete;
  ~MailServer() {
    close(in_);
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    close(out_);
  }

  // The next mail that it took; null when it took none.
  nlohmann::json Taken() {
    pollfd waiting{out_, POLLIN, 0};
    return poll(&waiting, 1, 0) > 0 ? nlohmann::json::parse(Line()) : nlohmann::json();
  }

  int port = 0;

 private:
  std::string Line() const {
    std::string line;
    char c = 0;
    while (read(out_, &c, 1) == 1 && c != '\n') line += c;
    return line;
  }

  pid_t pid_ = -1;
  int in_ = -1;
  int out_ = -1;
};

class RealServer : public testing::Test {
 protected:
  void SetUp() override {
    static const std::string missing = WhatIsMissing();
    if (!missing.empty())
      GTEST_SKIP() << "no mail server to try it with: package " << missing << " is not there";
  }
  // A certificate for this name that signs itself, in `NAME.pem` and `NAME.key`.
  void MakeCertificate(const std::string& name, const std::string& alternative) {
    const std::string command =
        "cd " + folder.path() +
        " && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -subj /CN=" + name +
        " -addext subjectAltName=" + alternative + " -keyout " + name + ".key -out " + name +
        ".pem 2>/dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
  }
  std::vector<std::string> With(const std::string& name, std::vector<std::string> more) const {
    more.insert(more.end(),
                {"--certificate", folder.Path(name + ".pem"), "--key", folder.Path(name + ".key")});
    return more;
  }
  Delivery Send(const MailServer& server, Security security, const std::string& authorities = "",
                const std::string& user = "", const std::string& password = "", std::int64_t seconds = 30) {
    const MailSettings settings = {
        "me@example.org", "z@example.org", "127.0.0.1", server.port, security, user, password};
    const std::string text = ComposeMail(settings, {{*ParseAlert(AlertText(7))}, 0}, 8, family);
    CurlTransport transport({authorities.empty() ? "" : folder.Path(authorities), {}, seconds, seconds});
    return transport.Send(settings, text);
  }

  test::TemporaryFolder folder;
  platform::MemoryFamily family;
};

TEST_F(RealServer, TakesAMailUnencryptedWhereTheFileAllowsIt) {
  MailServer server({});
  EXPECT_EQ(Send(server, Security::kNone).outcome, Outcome::kSent);
  const auto mail = server.Taken();
  EXPECT_EQ(mail["from"], "z@example.org");
  EXPECT_EQ(mail["to"], nlohmann::json({"me@example.org"}));
  EXPECT_EQ(mail["encrypted"], false);
  const auto parts = TakeApart(mail["text"]);
  EXPECT_EQ(parts.headers.at("Subject"), "Zendrix: alert on desk (risk 99 %): /tmp/x:17");
  EXPECT_THAT(parts.body, HasSubstr("runs from /tmp"));
  EXPECT_EQ(Send(server, Security::kWhereOffered).outcome, Outcome::kSent);
  // Where encryption is asked for and not offered nothing goes out.
  server.Taken();
  const auto refused = Send(server, Security::kStartTls);
  EXPECT_EQ(refused.outcome, Outcome::kLater);
  EXPECT_THAT(refused.reason, HasSubstr("no encryption"));
  EXPECT_TRUE(server.Taken().is_null());
}

TEST_F(RealServer, StartTlsWithALogin) {
  MakeCertificate("good", "IP:127.0.0.1");
  MailServer server(With("good", {"--starttls", "--login", "me", "s3cret;=\xC3\xA9"}));
  EXPECT_EQ(Send(server, Security::kStartTls, "good.pem", "me", "s3cret;=\xC3\xA9").outcome, Outcome::kSent);
  const auto mail = server.Taken();
  EXPECT_EQ(mail["encrypted"], true);
  EXPECT_EQ(mail["login"], "me");
  const auto denied = Send(server, Security::kStartTls, "good.pem", "me", "wrong");
  EXPECT_EQ(denied.outcome, Outcome::kNoLogin) << "a password that is mended lets the mail through";
  EXPECT_THAT(denied.reason, HasSubstr("user and password (535)"));
  EXPECT_TRUE(server.Taken().is_null());
}

TEST_F(RealServer, TlsFromTheFirstByte) {
  MakeCertificate("good", "IP:127.0.0.1");
  MailServer server(With("good", {"--tls"}));
  EXPECT_EQ(Send(server, Security::kTls, "good.pem").outcome, Outcome::kSent);
  EXPECT_EQ(server.Taken()["encrypted"], true);
}

TEST_F(RealServer, CertificateThatIsNotTrustedOrOfAnotherNameIsRefused) {
  MakeCertificate("good", "IP:127.0.0.1");
  MakeCertificate("other", "DNS:elsewhere.example.org");
  MailServer good(With("good", {"--starttls"}));
  MailServer other(With("other", {"--starttls"}));
  MailServer other_tls(With("other", {"--tls"}));
  for (const auto& delivery :
       {Send(good, Security::kStartTls), Send(good, Security::kWhereOffered),
        Send(good, Security::kStartTls, "other.pem"), Send(other, Security::kStartTls, "other.pem"),
        Send(other_tls, Security::kTls, "other.pem")}) {
    EXPECT_EQ(delivery.outcome, Outcome::kLater);
    EXPECT_THAT(delivery.reason, HasSubstr("certificate"));
  }
  EXPECT_TRUE(good.Taken().is_null());
  EXPECT_TRUE(other.Taken().is_null());
  EXPECT_TRUE(other_tls.Taken().is_null());
}

TEST_F(RealServer, AnswerSaysWhetherItIsWorthTryingAgain) {
  for (const char* step : {"mail", "rcpt", "data"}) {
    MailServer never({"--refuse", step, "550"});
    const auto refused = Send(never, Security::kNone);
    EXPECT_EQ(refused.outcome, Outcome::kRefused) << step;
    EXPECT_THAT(refused.reason, HasSubstr("(550)"));
    MailServer later({"--refuse", step, "451"});
    const auto waits = Send(later, Security::kNone);
    EXPECT_EQ(waits.outcome, Outcome::kLater) << step;
    EXPECT_THAT(waits.reason, HasSubstr("(451)"));
  }
}

TEST_F(RealServer, RefusalBehindEncryptionCounts) {
  MakeCertificate("good", "IP:127.0.0.1");
  for (const char* step : {"mail", "rcpt", "data"}) {
    MailServer starttls(With("good", {"--starttls", "--refuse", step, "550"}));
    EXPECT_EQ(Send(starttls, Security::kStartTls, "good.pem").outcome, Outcome::kRefused) << step;
  }
  MailServer tls(With("good", {"--tls", "--refuse", "rcpt", "550"}));
  EXPECT_EQ(Send(tls, Security::kTls, "good.pem").outcome, Outcome::kRefused);
}

TEST_F(RealServer, ForgedGreetingOrHelloRefusesNoMail) {
  for (const char* step : {"greeting", "ehlo"}) {
    MailServer forged({"--refuse", step, "554"});
    for (const Security security : {Security::kStartTls, Security::kWhereOffered, Security::kNone}) {
      const auto waits = Send(forged, security);
      EXPECT_EQ(waits.outcome, Outcome::kLater) << step;
      EXPECT_THAT(waits.reason, HasSubstr("(554)")) << step;
    }
  }
}

TEST_F(RealServer, RequestToLogInRefusesNoMail) {
  for (const char* code : {"530", "535"}) {
    MailServer server({"--refuse", "mail", code});
    EXPECT_EQ(Send(server, Security::kNone).outcome, Outcome::kLater) << code;
  }
}

TEST_F(RealServer, OneThatIsNotThereOrSaysNothingIsTriedLater) {
  int port = 0;
  {
    MailServer silent({"--silent"});
    port = silent.port;
    const auto waits = Send(silent, Security::kNone, "", "", "", 1);
    EXPECT_EQ(waits.outcome, Outcome::kLater);
    EXPECT_THAT(waits.reason, HasSubstr("in time"));
  }
  const MailSettings settings = {"a@b.c", "a@b.c", "127.0.0.1", port, Security::kNone, "", ""};
  const auto gone = CurlTransport({"", {}, 30, 30}).Send(settings, "x\r\n");
  EXPECT_EQ(gone.outcome, Outcome::kLater);
  EXPECT_THAT(gone.reason, HasSubstr("cannot be reached"));
}

TEST_F(RealServer, RequestToEndIsHeardInTheMiddleOfAMail) {
  MailServer silent({"--silent"});
  const MailSettings settings = {"a@b.c", "a@b.c", "127.0.0.1", silent.port, Security::kNone, "", ""};
  const auto left = CurlTransport({"", [] { return true; }, 600, 600}).Send(settings, "x\r\n");
  EXPECT_EQ(left.outcome, Outcome::kLater);
  EXPECT_THAT(left.reason, HasSubstr("told to end"));
}

// The program itself, as a service would run it.
TEST_F(RealServer, ProgramMailsAnAlertOnceAndKeepsThePasswordToItself) {
  MakeCertificate("good", "IP:127.0.0.1");
  MailServer server(With("good", {"--starttls", "--login", "me", "s3cret"}));
  const std::string text =
      "Send Alerts To=me@example.org;SMTP Server=127.0.0.1:" + std::to_string(server.port) +
      ";User=me;Password=s3cret;";
  folder.Write("KorvessaSMTPConfig.kvl", text);
  folder.Write("KorvessaSMTPConfig.kvh", family.HashBytes(text) + "\r\n");
  folder.Write("KorvessaMonitoring.kvl", AlertText(1795225505, "AG,OLD,1"));
  const auto run = [&](const std::string& options) {
    const std::string command = std::string(ZENDRIX_MAIL) + " " + options + " --folder " + folder.path() +
                                " --authorities " + folder.Path("good.pem") + " >>" + folder.Path("told") +
                                " 2>&1";
    return WEXITSTATUS(std::system(command.c_str()));
  };
  EXPECT_EQ(run("--once"), 0);
  EXPECT_TRUE(server.Taken().is_null()) << "what was there before is history";
  folder.Write("KorvessaMonitoring.kvl",
               AlertText(1795225505, "AG,OLD,1") + AlertText(1795225600, "AG,NEW,1"));
  EXPECT_EQ(run("--once"), 0);
  EXPECT_EQ(run("--once"), 0);
  const auto mail = server.Taken();
  ASSERT_FALSE(mail.is_null());
  EXPECT_EQ(mail["login"], "me");
  EXPECT_TRUE(server.Taken().is_null());
  EXPECT_EQ(run("--try"), 0);
  EXPECT_FALSE(server.Taken().is_null());
  EXPECT_EQ(run("--password x"), 2);
  EXPECT_THAT(folder.Read("KorvessaEventLog.kvl"), HasSubstr("E-mail of 1 alert was sent\r\n"));
  for (const char* name : {"KorvessaEventLog.kvl", "zendrix-mail.state", "told"}) {
    EXPECT_EQ(folder.Read(name).find("s3cret"), std::string::npos) << name;
  }
}

}  // namespace
}  // namespace zendrix::mail
