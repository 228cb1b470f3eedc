// The family libraries as they are installed. The first two are linked in; KorvessaIntermediateTypes is the
// file "libKorvessaIntermediateTypes.so" in the executable's folder, or where it was installed, loaded at the
// first call that needs it.
// As long as it is not there (or lacks a function) each call looks again.
//
// Where the library refuses for want of rights, and a helper with more of them is there, that is asked; what
// is in its quarantine stands in the list behind the user's own. Where there is none, or it does not answer
// before it was asked, everything is as the library says. An installed console asks the helper first, so that
// whatever is blocked is out of reach of the user's own programs.
#pragma once

#include <string>

#include "platform/act_helper.h"
#include "platform/family_libraries.h"

namespace zendrix::platform {

class LinuxFamily : public FamilyLibraries {
 public:
  // Where KorvessaIntermediateTypes is, as an absolute path.
  explicit LinuxFamily(std::string folder) : folder_(std::move(folder)) {}
  LinuxFamily(const LinuxFamily&) = delete;
  LinuxFamily& operator=(const LinuxFamily&) = delete;
  ~LinuxFamily() override;

  // Asked for what takes more rights; outlives the object. None by default.
  void SetHelper(ActHelper* helper) { helper_ = helper; }
  // Has the helper put away the user's own files as well.
  void PreferHelper() { prefer_helper_ = true; }

  // Where the quarantine is; with `pretend` its operations only say what they would do. By default they act,
  // in the library's folder.
  void ConfigureQuarantine(std::string program_folder, bool pretend) {
    program_folder_ = std::move(program_folder);
    pretend_ = pretend;
  }

  LocalTime FromUTC(std::int32_t seconds) override;
  std::int32_t ToUTC(const LocalTime& local) override;
  std::string HashBytes(std::string_view bytes) override;
  Status QuarantineExport(const QuarantineEvent& event, std::string& message) override;
  Status UnquarantineExport(const QuarantineEvent& event, std::string& message) override;
  Result<std::vector<QuarantineEntry>> QuarantineList() override;
  Result<std::vector<QuarantineEntry>> QuarantineListOf(const std::string& alert) override;
  Result<bool> RestoreExport(const std::string& name, std::string& message) override;
  Result<std::string> GetHostIDExport(const std::string& product) override;

 private:
  // The address of a function of KorvessaIntermediateTypes.
  Result<void*> Function(const char* name);
  // The same for a function of the quarantine, which is told first where that is.
  Result<void*> QuarantineFunction(const char* name);
  Result<std::int32_t> Quarantine(const char* function, const QuarantineEvent& event, std::string& message);
  Result<std::vector<QuarantineEntry>> OwnList();
  // Whether the helper was there to be asked; then the message says what became of it.
  bool HelperBlocks(const QuarantineEvent& event, std::string& message);
  // Empty where there is no helper, or it does not say.
  std::vector<QuarantineEntry> HelpersList();
  // Whether the helper may be asked: never for a call that is only to say what it would do.
  bool MayAskHelper() const { return helper_ != nullptr && !pretend_; }

  std::string folder_;
  std::string program_folder_ = folder_;
  bool pretend_ = false;
  ActHelper* helper_ = nullptr;
  bool prefer_helper_ = false;
  void* library_ = nullptr;
};

}  // namespace zendrix::platform
