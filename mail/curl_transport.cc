#include "mail/curl_transport.h"

#include <curl/curl.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

namespace zendrix::mail {
namespace {

constexpr long kFirstRefusal = 500;
constexpr long kLastRefusal = 599;

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

std::string Reason(CURLcode result, long reply) {
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
  if (reply >= kFirstRefusal && reply <= kLastRefusal) return "the mail server does not take it" + number;
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
  // An option that this libcurl does not know must not be missing unnoticed: each of them guards something.
  if (!is_set) return {Delivery::Outcome::kLater, "libcurl lacks an option that is needed"};

  const CURLcode result = curl_easy_perform(curl);
  if (result == CURLE_OK) return {Delivery::Outcome::kSent, ""};
  long reply = 0;
  curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &reply);
  // A reply of an earlier step says nothing about a road that broke off later.
  const bool is_answer = result == CURLE_LOGIN_DENIED || result == CURLE_SEND_ERROR ||
                         result == CURLE_WEIRD_SERVER_REPLY || result == CURLE_RECV_ERROR ||
                         result == CURLE_UPLOAD_FAILED || result == CURLE_REMOTE_ACCESS_DENIED;
  const bool refused = is_answer && reply >= kFirstRefusal && reply <= kLastRefusal;
  return {refused ? Delivery::Outcome::kRefused : Delivery::Outcome::kLater, Reason(result, reply)};
}

}  // namespace zendrix::mail
