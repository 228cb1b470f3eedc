#include "family/intermediate/package_record.h"

#include <openssl/evp.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "family/intermediate/hex.h"
#include "family/intermediate/run_tool.h"
#include "family/intermediate/same_file.h"
#include "family/intermediate/text_file.h"

namespace zendrix::family {
namespace {

constexpr std::string_view kMerged = "/usr";
constexpr std::size_t kMd5Digits = 32;

// Empty when the file cannot be read or the sum cannot be had.
std::string Md5Of(const Descriptor& file) {
  const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
  if (!context || EVP_DigestInit_ex(context.get(), EVP_md5(), nullptr) != 1) return "";
  std::array<char, 65536> block;
  off_t position = 0;
  for (ssize_t got; (got = ::pread(file.get(), block.data(), block.size(), position)) != 0; position += got)
    if (got < 0 || EVP_DigestUpdate(context.get(), block.data(), static_cast<std::size_t>(got)) != 1)
      return "";
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest = {};
  unsigned int length = 0;
  if (EVP_DigestFinal_ex(context.get(), digest.data(), &length) != 1) return "";
  return Hex(digest.data(), length);
}

// "/usr/bin/tool" is "/bin/tool" in records from before the two folders became one, and the other way round.
std::set<std::string> NamesOf(const std::string& path) {
  std::set<std::string> names = {path};
  for (const std::string_view folder : {"/bin/", "/sbin/", "/lib"}) {
    if (path.starts_with(folder)) names.insert(std::string(kMerged) + path);
    if (path.starts_with(std::string(kMerged) + std::string(folder)))
      names.insert(path.substr(kMerged.size()));
  }
  return names;
}

class DpkgRecords {
 public:
  DpkgRecords(const NamedFile& file, const Outside& outside)
      : file_(file), outside_(outside), info_(outside.package_records + "/info/") {
    if (file.place.path.starts_with(outside.package_root))
      names_ = NamesOf(file.place.path.substr(outside.package_root.size()));
    AddDiversions();
    last_names_.insert(file.place.name);
    for (const auto& name : names_) last_names_.insert(name.substr(name.rfind('/') + 1));
  }

  Packaged Look() {
    const auto records = zendrix::family::NamesIn(info_);
    for (const std::string& record : records) {
      if (record.ends_with(".md5sums")) LookIntoSums(record);
      if (record.ends_with(".list")) LookIntoList(record);
    }
    if (!listed_) return Packaged::kNo;
    if (sums_.empty()) return Packaged::kAsBuilt;
    const std::string sum = Md5Of(file_.file);
    return sum.empty() || sums_.contains(sum) ? Packaged::kAsBuilt : Packaged::kAltered;
  }

 private:
  // Three lines each: the path in the package, where its file was put instead, who asked for it.
  void AddDiversions() {
    const std::string text = TextOf(outside_.package_records + "/diversions").value_or("");
    const auto lines = LinesOf(text);
    for (std::size_t i = 0; i + 2 < lines.size(); i += 3)
      if (names_.contains(std::string(lines[i + 1]))) names_.emplace(lines[i]);
  }

  bool IsMeant(std::string_view path) const {
    const auto name = path.substr(path.rfind('/') + 1);
    if (!last_names_.contains(name)) return false;  // most lines end here
    const std::string whole(path);
    return names_.contains(whole) || IsSameFile(outside_.package_root + whole, file_.status);
  }

  // "d41d8cd98f00b204e9800998ecf8427e  usr/bin/tool"
  void LookIntoSums(const std::string& record) {
    const std::string text = TextOf(info_ + record).value_or("");
    for (const auto line : LinesOf(text)) {
      if (line.size() < kMd5Digits + 3) continue;
      if (!IsMeant("/" + std::string(line.substr(kMd5Digits + 2)))) continue;
      listed_ = true;
      sums_.emplace(line.substr(0, kMd5Digits));
    }
  }

  void LookIntoList(const std::string& record) {
    const std::string text = TextOf(info_ + record).value_or("");
    for (const auto line : LinesOf(text))
      if (IsMeant(line)) listed_ = true;
  }

  const NamedFile& file_;
  const Outside& outside_;
  const std::string info_;
  std::set<std::string> names_;
  std::set<std::string, std::less<>> last_names_;
  std::set<std::string> sums_;
  bool listed_ = false;
};

// A line of "rpm -Vf PATH": "S.5....T.  c /usr/bin/tool", where the third mark says that the contents differ.
bool SaysAltered(std::string_view text, const std::string& path) {
  constexpr std::size_t kContents = 2;
  for (const auto line : LinesOf(text))
    if (line.ends_with(" " + path) && line.size() > kContents && line[kContents] == '5') return true;
  return false;
}

Packaged AskRpm(const std::string& path, const Outside& outside) {
  const auto owner = RunTool({outside.rpm, "-qf", "--", path}, outside.tool_time);
  if (!owner) return Packaged::kUnknown;
  if (owner->status != 0) return Packaged::kNo;
  const auto verified = RunTool({outside.rpm, "-Vf", "--nodeps", "--", path}, outside.tool_time);
  if (!verified) return Packaged::kUnknown;
  return SaysAltered(verified->text, path) ? Packaged::kAltered : Packaged::kAsBuilt;
}

// This one does not tell of a single file whether it is as it was built.
Packaged AskPacman(const std::string& path, const Outside& outside) {
  const auto owner = RunTool({outside.pacman, "-Qo", "--", path}, outside.tool_time);
  if (!owner) return Packaged::kUnknown;
  return owner->status == 0 ? Packaged::kAsBuilt : Packaged::kNo;
}

bool IsThere(const std::string& tool) {
  return !tool.empty() && ::access(tool.c_str(), X_OK) == 0;
}

}  // namespace

Packaged PackagedAs(const NamedFile& file, const Outside& outside) {
  const Packaged recorded = DpkgRecords(file, outside).Look();
  if (recorded != Packaged::kNo) return recorded;
  if (IsThere(outside.rpm)) {
    const Packaged told = AskRpm(file.place.path, outside);
    if (told != Packaged::kNo) return told;
  }
  return IsThere(outside.pacman) ? AskPacman(file.place.path, outside) : Packaged::kNo;
}

}  // namespace zendrix::family
