#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/response.h"

namespace {

Response* response_of_types(const std::vector<std::string>& names) {
  auto* response = new Response;
  for (const std::string& name : names) {
    ResponseGroup group;
    group.type_name = name;
    response->groups.push_back(group);
    ++response->group_count;
  }
  return response;
}

TEST(ResponseStageType, CopiesTheNameOfAGroup) {
  Response* response = response_of_types({"paz", "fapx"});
  std::array<char, 64> type{};
  EXPECT_EQ(get_response_stage_type(response, 0, type.data()), 0);
  EXPECT_STREQ(type.data(), "paz");
  EXPECT_EQ(get_response_stage_type(response, 1, type.data()), 0);
  EXPECT_STREQ(type.data(), "fapx");
  free_response(response);
}

TEST(ResponseStageType, LeavesTheBufferAloneWithoutSuchAGroup) {
  Response* response = response_of_types({"paz"});
  std::array<char, 64> type{"before"};
  EXPECT_EQ(get_response_stage_type(response, 1, type.data()), -1);
  EXPECT_EQ(get_response_stage_type(response, -1, type.data()), -1);
  EXPECT_EQ(get_response_stage_type(nullptr, 0, type.data()), -1);
  EXPECT_STREQ(type.data(), "before");
  free_response(response);
}

TEST(ResponseStageType, CutsALongNameToTheBuffer) {
  Response* response = response_of_types({std::string(63, 'x'), std::string(64, 'x'), std::string(62, 'x') + "\u00e4"});
  std::array<char, 64> type{};
  for (const int stage : {0, 1}) {
    EXPECT_EQ(get_response_stage_type(response, stage, type.data()), 0);
    EXPECT_EQ(type.data(), std::string(63, 'x'));
  }
  EXPECT_EQ(get_response_stage_type(response, 2, type.data()), 0);
  EXPECT_EQ(type.data(), std::string(62, 'x'));
  free_response(response);
}

// What is not freed, or freed as something else, the sanitizers tell.
TEST(FreeResponse, FreesEveryKindOfFilter) {
  auto* response = new Response;
  const std::pair<int, void*> filters[] = {
      {RESPONSE_PAZ, new Paz}, {RESPONSE_FIR, new Fir},   {RESPONSE_IIR, new Iir},
      {RESPONSE_FAP, new Fap}, {RESPONSE_FAP2, new Fap2}, {RESPONSE_OTHER, nullptr},
  };
  for (const auto& [type, filter] : filters) {
    ResponseGroup group;
    group.type = type;
    group.filter = filter;
    response->groups.push_back(group);
  }
  free_response(response);
}

TEST(FreeResponse, DoesNothingForNull) { free_response(nullptr); }

}  // namespace
