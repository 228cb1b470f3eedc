// The host's identifier.
#pragma once

#include <string>

namespace zendrix::family {

// HMAC-SHA256 of the product's name under the machine id (machine-id(5)) as key, 64 lower-case hexadecimal
// digits; empty when the machine has no id.
std::string HostId(const std::string& product);
// The same for a given machine id.
std::string DeriveHostId(const std::string& machine_id, const std::string& product);

}  // namespace zendrix::family
