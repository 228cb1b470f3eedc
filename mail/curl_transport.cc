#include "mail/curl_transport.h"

#include <curl/curl.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

namespace zendrix::mail {
namespace {

constexpr long kFirstRefusal = 500;
constexpr long kLastRefusal = 599;
// Replies that ask for another login or for encryption, at whatever step (RFC 4954, 3207): they speak of the
// connection and not of the mail.
constexpr long kOfLogin[] = {530, 534, 535, 538};

bool IsRefusal(long reply) {
  return reply >= kFirstRefusal && reply <= kLastRefusal &&
         std::find(std::begin(kOfLogin), std::end(kOfLogin), reply) == std::end(kOfLogin);
}

// What was said last, and whether the mail itself was refused. Only a reply to MAIL, RCPT or DATA speaks of
// the mail; whoever stands in the road can forge the greeting, which comes before any encryption. Where
// encryption is required libcurl says none of the three without it, so that such a reply is the server's own.
struct Conversation {
  bool is_about_mail = false;
  bool is_refused = false;
};

int Listen(CURL*, curl_infotype type, char* bytes, std::size_t size, void* user) {
  auto& conversation = *static_cast<Conversation*>(user);
  const std::string_view text(bytes, size);
  if (type == CURLINFO_HEADER_OUT) {
    conversation.is_about_mail =
        text.starts_with("MAIL FROM:") || text.starts_with("RCPT TO:") || text.starts_with("DATA\r\n");
  } else if (type == CURLINFO_HEADER_IN && conversation.is_about_mail) {
    long reply = 0;
    const auto read = std::from_chars(text.data(), text.data() + std::min<std::size_t>(size, 3), reply);
    if (read.ec == std::errc() && IsRefusal(reply)) conversation.is_refused = true;
  }
  return 0;
}

std::size_t GiveText(char* buffer, std::size_t size, std::size_t count, void* user) {
  auto& rest = *static_cast<std::string_view*>(user);
  const std::size_t given = std::min(rest.size(), size * count);
  std::memcpy(buffer, rest.data(), given);
  rest.remove_prefix(given);
  return given;
}

int AskWhetherToStop(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  const auto& options = *static_cast<const CurlOptions*>(user);
  return options.stop_requested && options.stop_requested() ? 1 : 0;
}

std::string Reason(CURLcode result, long reply, bool is_refused) {
  const std::string number = reply > 0 ? " (" + std::to_string(reply) + ")" : "";
  switch (result) {
    case CURLE_COULDNT_RESOLVE_HOST:
      return "the mail server's name has no address";
    case CURLE_COULDNT_CONNECT:
      return "the mail server cannot be reached";
    case CURLE_OPERATION_TIMEDOUT:
      return "the mail server does not answer in time";
    case CURLE_PEER_FAILED_VERIFICATION:
      return "the mail server's certificate is not trusted";
    case CURLE_SSL_CACERT_BADFILE:
      return "the file of trusted certificates cannot be read";
    case CURLE_USE_SSL_FAILED:
      return "the mail server offers no encryption" + number;
    case CURLE_SSL_CONNECT_ERROR:
      return "the mail server cannot be talked to encrypted";
    case CURLE_LOGIN_DENIED:
      return "the mail server does not take user and password" + number;
    case CURLE_ABORTED_BY_CALLBACK:
      return "this program was told to end";
    default:
      break;
  }
  if (is_refused) return "the mail server does not take it" + number;
  if (reply >= kFirstRefusal && reply <= kLastRefusal)
    return "the mail server turns this computer away" + number;
  return "the mail server did not take it; error " + std::to_string(static_cast<int>(result)) + number;
}

curl_usessl Encryption(Security security) {
  if (security == Security::kStartTls) return CURLUSESSL_ALL;
  return security == Security::kWhereOffered ? CURLUSESSL_TRY : CURLUSESSL_NONE;
}

}  // namespace

CurlTransport::CurlTransport(CurlOptions options) : options_(std::move(options)) {
  curl_global_init(CURL_GLOBAL_DEFAULT);
}

CurlTransport::~CurlTransport() {
  curl_global_cleanup();
}

Delivery CurlTransport::Send(const MailSettings& settings, const std::string& text) {
  Conversation conversation;  // outlives the handle, which may still say goodbye at its end
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle(curl_easy_init(), curl_easy_cleanup);
  const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> recipients(
      curl_slist_append(nullptr, ("<" + settings.to + ">").c_str()), curl_slist_free_all);
  if (!handle || !recipients) return {Delivery::Outcome::kLater, "there is no memory for it"};
  CURL* const curl = handle.get();
  bool is_set = true;
  const auto set = [&](CURLoption option, auto value) {
    is_set = is_set && curl_easy_setopt(curl, option, value) == CURLE_OK;
  };
  const char* const protocol = settings.security == Security::kTls ? "smtps" : "smtp";
  std::string_view rest = text;
  set(CURLOPT_URL,
      (std::string(protocol) + "://" + settings.server + ":" + std::to_string(settings.port)).c_str());
  set(CURLOPT_PROTOCOLS_STR, protocol);
  set(CURLOPT_PROXY, "");
  set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_USE_SSL, static_cast<long>(Encryption(settings.security)));
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  if (!options_.authorities.empty()) set(CURLOPT_CAINFO, options_.authorities.c_str());
  if (!settings.user.empty()) {
    set(CURLOPT_USERNAME, settings.user.c_str());
    set(CURLOPT_PASSWORD, settings.password.c_str());
  }
  set(CURLOPT_MAIL_FROM, ("<" + settings.from + ">").c_str());
  set(CURLOPT_MAIL_RCPT, recipients.get());
  set(CURLOPT_CONNECTTIMEOUT, static_cast<long>(options_.connect_seconds));
  set(CURLOPT_TIMEOUT, static_cast<long>(options_.whole_seconds));
  set(CURLOPT_UPLOAD, 1L);
  set(CURLOPT_READFUNCTION, GiveText);
  set(CURLOPT_READDATA, static_cast<void*>(&rest));
  set(CURLOPT_NOPROGRESS, 0L);
  set(CURLOPT_XFERINFOFUNCTION, AskWhetherToStop);
  set(CURLOPT_XFERINFODATA, const_cast<void*>(static_cast<const void*>(&options_)));
  set(CURLOPT_DEBUGFUNCTION, Listen);
  set(CURLOPT_DEBUGDATA, static_cast<void*>(&conversation));
  set(CURLOPT_VERBOSE, 1L);  // to Listen alone, which keeps nothing of it
  // An option that this libcurl does not know must not be missing unnoticed: each of them guards something.
  if (!is_set) return {Delivery::Outcome::kLater, "libcurl lacks an option that is needed"};

  const CURLcode result = curl_easy_perform(curl);
  if (result == CURLE_OK) return {Delivery::Outcome::kSent, ""};
  long reply = 0;
  curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &reply);
  // A reply below 500 is a trouble of the server's that passes.
  const bool is_denied = result == CURLE_LOGIN_DENIED && reply >= kFirstRefusal;
  const auto waits = is_denied ? Delivery::Outcome::kNoLogin : Delivery::Outcome::kLater;
  return {conversation.is_refused ? Delivery::Outcome::kRefused : waits,
          Reason(result, reply, conversation.is_refused)};
}

}  // namespace zendrix::mail
