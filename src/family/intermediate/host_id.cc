#include "family/intermediate/host_id.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <fstream>

#include "family/intermediate/hex.h"

namespace zendrix::family {
namespace {

// 32 hexadecimal digits; a system that was never started has an empty file or "uninitialized".
bool IsMachineId(const std::string& text) {
  return text.size() == 32 && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

std::string MachineId() {
  for (const char* path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
    std::ifstream file(path);
    std::string id;
    if (std::getline(file, id) && IsMachineId(id)) return id;
  }
  return "";
}

}  // namespace

std::string HostId(const std::string& product) {
  return DeriveHostId(MachineId(), product);
}

std::string DeriveHostId(const std::string& machine_id, const std::string& product) {
  if (machine_id.empty()) return "";
  const std::string text = "Korvessa host identifier 1:" + product;
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  const bool made = HMAC(EVP_sha256(), machine_id.data(), static_cast<int>(machine_id.size()),
                         reinterpret_cast<const unsigned char*>(text.data()), text.size(), digest, &length);
  return made ? Hex(digest, length) : "";
}

}  // namespace zendrix::family
