// Reads the truth tables of tests/data/golden: tab-separated, one header line, escapes as its README.md
// tells. Fields come out as single-byte texts, the way the program sees them.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::test {

class GoldenRow {
 public:
  explicit GoldenRow(std::map<std::string, std::string> fields) : fields_(std::move(fields)) {}

  // The field as it stands in the file; fails the test when there is no such column.
  std::string Raw(const std::string& column) const;
  // The field with its escapes resolved.
  std::string Text(const std::string& column) const;
  // The field is "\N": a null pointer, a file that does not exist.
  bool IsNull(const std::string& column) const { return Raw(column) == "\\N"; }
  // The field is "*": not to be compared.
  bool IsAny(const std::string& column) const { return Raw(column) == "*"; }
  int Int(const std::string& column) const;
  // Hexadecimal, without prefix.
  unsigned Hex(const std::string& column) const;
  double Number(const std::string& column) const;
  // The first column, by which a row is named.
  const std::string& Id() const { return id_; }
  void SetId(std::string id) { id_ = std::move(id); }

 private:
  std::map<std::string, std::string> fields_;
  std::string id_;
};

// Rows of `data_folder`/golden/`name`; fails the test when there are none.
std::vector<GoldenRow> LoadGolden(const std::string& data_folder, const std::string& name);

// Escapes resolved. A UTF-16 unit without a byte in the code page becomes "?", the ideographic blank a blank.
std::string UnescapeGolden(std::string_view field);
// Readable form of any bytes, for messages.
std::string EscapeGolden(std::string_view bytes);

// Gathers the rows that failed, so that one run shows all of them; reports at the end of its life.
class GoldenReport {
 public:
  GoldenReport() = default;
  GoldenReport(const GoldenReport&) = delete;
  GoldenReport& operator=(const GoldenReport&) = delete;
  ~GoldenReport();

  void Compare(const GoldenRow& row, std::string_view input, std::string_view expected, std::string_view got);

 private:
  std::string failures_;
  int compared_ = 0;
};

}  // namespace zendrix::test
