#include "family/intermediate/host_id.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <fstream>

#include "family/intermediate/hex.h"

namespace zendrix::family {
namespace {

std::string MachineId() {
  for (const char* path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
    std::ifstream file(path);
    std::string id;
    if (std::getline(file, id) && !id.empty()) return id;
  }
  return "";
}

}  // namespace

std::string HostId(const std::string& product) {
  const std::string machine = MachineId();
  if (machine.empty()) return "";
  const std::string text = "Korvessa host identifier 1:" + product;
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  HMAC(EVP_sha256(), machine.data(), static_cast<int>(machine.size()),
       reinterpret_cast<const unsigned char*>(text.data()), text.size(), digest, &length);
  return Hex(digest, length);
}

}  // namespace zendrix::family
