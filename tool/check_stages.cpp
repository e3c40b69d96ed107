#include <cstring>
#include <unordered_map>

#include "dbhelper.h"
#include "platform/response.h"
#include "tool/findings.h"

namespace triglub::tool {

namespace {

// What a response file gives for a stage: nothing to say, or why there is no filter in the document.
std::string reason_of(const Response& response) {
  if (response.group_count != 1) {
    return "response file has " + std::to_string(response.group_count) + " filter groups, expected 1";
  }
  const ResponseGroup& group = response.groups[0];
  if (group.type == RESPONSE_PAZ || group.type == RESPONSE_FIR) return "";
  return "response of type " + group.type_name + ", for which no filter is written";
}

class StageCheck {
 public:
  StageCheck(Dbptr everything, Findings* findings) : view_(everything), findings_(*findings) {
    const char* folder = nullptr;
    const Dbptr stage = dblookup(everything, nullptr, "stage", nullptr, nullptr);
    if (dbquery(stage, dbTABLE_DIRNAME, &folder) >= 0) folder_ = folder;
  }

  void run() {
    const std::vector<std::uint32_t> rows = base_rows(view_, "stage");
    for (std::size_t r = 0; r < rows.size(); ++r) {
      if (rows[r] == NO_BASE_ROW) continue;
      view_.record = static_cast<std::int64_t>(r);
      check_units("stage.iunits", rows[r]);
      check_units("stage.ounits", rows[r]);
      check_file();
    }
  }

 private:
  void check_units(const char* field, std::uint32_t row) {
    char text[1024] = "";
    // The library writes units as they are.
    if (dbgetv(view_, nullptr, field, text, nullptr) != 0 || std::strpbrk(text, "&<") == nullptr) return;
    findings_.fault(table_path(view_, "stage") + ":" + std::to_string(row + 1) + ": field " + field + ": the unit '" +
                    text + "' cannot stand in XML, expected no & and no <");
  }

  void check_file() {
    char dir[1024] = "";
    char dfile[1024] = "";
    if (dbgetv(view_, nullptr, "stage.dir", dir, "stage.dfile", dfile, nullptr) != 0) return;
    if (std::strcmp(dfile, "-") == 0) return;  // a gain without a filter
    const std::string file = std::string(dir) + "/" + dfile;
    const auto [known, is_new] = reasons_.try_emplace(file);
    if (is_new) known->second = reason_for(dir, dfile, file);
    if (!known->second.empty()) findings_.left_out("stages without their filter: " + known->second, name(file));
  }

  std::string reason_for(const char* dir, const char* dfile, const std::string& file) {
    if (dir[0] == '-' || dfile[0] == '-') return "the row names no folder, or a name that begins with '-'";
    Response* response = nullptr;
    std::string fault;
    const int status = read_response((folder_ + "/" + file).c_str(), &response, &fault);
    if (status == 0) {
      const std::string reason = reason_of(*response);
      if (reason.empty()) check_rate(*response, file);
      free_response(response);
      return reason;
    }
    if (status != -1) findings_.fault(fault);
    return status == -1 ? "response file missing" : "response file faulty";
  }

  // The delay is written in seconds: a filter without a rate would make it infinite.
  void check_rate(const Response& response, const std::string& file) {
    const ResponseGroup& group = response.groups[0];
    if (group.type != RESPONSE_FIR || static_cast<const Fir*>(group.filter)->samprate > 0.0) return;
    findings_.fault(folder_ + "/" + file + ": the filter's input sample rate is not positive");
  }

  std::string name(const std::string& file) const {
    return db_fieldlookup(view_, "stage.sta") + " " + db_fieldlookup(view_, "stage.chan") + " stage " +
           db_fieldlookup(view_, "stage.stageid") + " " + file;
  }

  Dbptr view_;
  Findings& findings_;
  std::string folder_;
  std::unordered_map<std::string, std::string> reasons_;  // by file
};

}  // namespace

void check_stages(Dbptr everything, Findings* findings) { StageCheck(everything, findings).run(); }

}  // namespace triglub::tool
